#pragma once

#include "mainwindow/MenuState.h"
#include "texts/Texts.h"

#include <QObject>

#include <functional>

class QAction;
class QMenu;
class QMenuBar;

/// The menu of the main window: its entries, what they are called, and which of them can be chosen.
class MainMenu : public QObject
{
    Q_OBJECT

public:
    using Caption = std::function<QString()>;

    /// @param bar    like @p texts, must outlive this object
    /// @param input  what decides which entries can be chosen; asked anew each time
    MainMenu(QMenuBar &bar, const Texts &texts, std::function<MenuInput()> input);

    /// Adds an entry at the end of its menu. @param name  its objectName
    void add(Entry entry, const char *name, Caption caption, std::function<void()> chosen);
    void add(Entry entry, const char *name, Text caption, std::function<void()> chosen);
    void separate(TopMenu menu, const char *name);
    void setShortcut(Entry entry, Qt::Key key);

    /// Takes the captions anew, in the language in force.
    void applyTexts();
    /// What can be chosen may have changed.
    void applyState();
    MenuState state() const { return menuState(m_input()); }

private:
    QMenu *menu(TopMenu top) const { return m_menus[static_cast<size_t>(top)]; }

    QMenuBar &m_bar;
    const Texts &m_texts;
    const std::function<MenuInput()> m_input;
    std::array<QMenu *, TopMenuCount> m_menus{};
    std::array<QAction *, EntryCount> m_entries{};
    std::array<Caption, EntryCount> m_captions;
};
