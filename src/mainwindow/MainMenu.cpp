#include "mainwindow/MainMenu.h"

#include <QMenu>
#include <QMenuBar>

namespace {

struct Top {
    const char *name;
    Text caption;
};

constexpr std::array<Top, TopMenuCount> tops = {{{"mnuFile", Text::MnuFile},
                                                 {"mnuAnagrafica", Text::MnuAnagrafica},
                                                 {"mnuConsult", Text::MnuConsultazioni},
                                                 {"mnuStrumenti", Text::MnuStrumenti},
                                                 {"mnuHelp", Text::MnuAiuto}}};

} // namespace

MainMenu::MainMenu(QMenuBar &bar, const Texts &texts, std::function<MenuInput()> input)
    : m_bar(bar), m_texts(texts), m_input(std::move(input))
{
    for (size_t i = 0; i < tops.size(); ++i) {
        m_menus.at(i) = bar.addMenu(QString());
        m_menus.at(i)->setObjectName(QString::fromLatin1(tops.at(i).name));
        m_menus.at(i)->menuAction()->setObjectName(QString::fromLatin1(tops.at(i).name));
    }
}

void MainMenu::add(Entry entry, const char *name, Caption caption, std::function<void()> chosen)
{
    QAction *action = menu(menuOf(entry))->addAction(QString());
    action->setObjectName(QString::fromLatin1(name));
    m_entries.at(static_cast<size_t>(entry)) = action;
    m_captions.at(static_cast<size_t>(entry)) = std::move(caption);
    // Keys and screen readers find ways past a disabled menu: the gate is asked at the entry itself.
    connect(action, &QAction::triggered, this, [this, entry, chosen = std::move(chosen)] {
        if (m_bar.isEnabled() && state()[entry])
            chosen();
    });
}

void MainMenu::add(Entry entry, const char *name, Text caption, std::function<void()> chosen)
{
    add(
        entry, name, [this, caption] { return m_texts[caption]; }, std::move(chosen));
}

void MainMenu::separate(TopMenu top, const char *name)
{
    menu(top)->addSeparator()->setObjectName(QString::fromLatin1(name));
}

void MainMenu::setShortcut(Entry entry, Qt::Key key)
{
    m_entries.at(static_cast<size_t>(entry))->setShortcut(key);
}

void MainMenu::applyTexts()
{
    for (size_t i = 0; i < m_menus.size(); ++i)
        m_menus.at(i)->setTitle(m_texts[tops.at(i).caption]);
    for (size_t i = 0; i < m_entries.size(); ++i)
        m_entries.at(i)->setText(m_captions.at(i)());
}

void MainMenu::applyState()
{
    const MenuState now = state();
    for (size_t i = 0; i < m_menus.size(); ++i)
        m_menus.at(i)->setEnabled(now.menus.at(i));
    for (size_t i = 0; i < m_entries.size(); ++i)
        m_entries.at(i)->setEnabled(now.entries.at(i));
}
