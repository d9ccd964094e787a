#pragma once

#include "mainwindow/MDIForm1.h"
#include "platform/Transport.h"

#include <QTemporaryDir>

#include <functional>

/// Ends the tool, as what it was to show does not come.
[[noreturn]] void giveUp(const QString &why);

/// Goes round until @p hasCome; gives up after a time in which the slowest machine would have brought it.
void waitFor(const std::function<bool()> &hasCome, const char *what);

/// A clock that stands at one moment, so that pictures do not depend on when they are taken.
class StandingClock : public Clock
{
public:
    QDateTime moment = QDateTime(QDate(2026, 3, 6), QTime(9, 12, 40));
    qint64 milliseconds = 1'000'000;

    QDateTime now() const override { return moment; }
    qint64 monotonic() const override { return milliseconds; }
    qint64 asleep() const override { return 0; }
};

/// An interface that answers when it is asked, as long as it is on.
class InventedInterface : public Transport
{
    Q_OBJECT

public:
    using Transport::Transport;

    bool isOn = true;

    Result<void> open(const QString &device) override;
    void close() override { m_isOpen = false; }
    bool isOpen() const override { return m_isOpen; }
    QString deviceName() const override { return m_device; }
    QByteArray read() override { return std::exchange(m_waiting, {}); }
    bool hasMore() const override { return !m_waiting.isEmpty(); }
    Result<void> write(const QByteArray &bytes) override;
    void setEnableLine(bool asserted) override { m_line = asserted; }
    std::optional<bool> enableLine() override { return m_line; }

private:
    QString m_device;
    QByteArray m_asked;
    QByteArray m_waiting;
    bool m_isOpen = false;
    bool m_line = false;
};

/// The program with its window in one language, on invented users, events, bands and holidays, with an interface on
/// line. What it would tell the operator in a box means that something is missing, and ends the tool.
class PictureDesk
{
public:
    /// @param installation  program folder with templates and pictures; @param language  see Texts
    PictureDesk(const QString &installation, int language);
    ~PictureDesk();
    PictureDesk(const PictureDesk &) = delete;
    PictureDesk &operator=(const PictureDesk &) = delete;

    MDIForm1 &window() { return *m_window; }
    Clock &clock() { return m_clock; }
    /// Chooses an entry of the menu. @param name  of its action @return the window that it opens
    ChildWindow *choose(const char *name);
    /// Switches the interface off, and lets time pass until the alarm stands, the state shown inverted.
    void raiseAlarm();

private:
    class Boxes : public Messages
    {
    public:
        void show(QWidget *, Icon, const QString &text, std::function<void()>) override { giveUp(text); }
        void ask(QWidget *, const QString &text, Buttons, std::function<void(Answer)>) override { giveUp(text); }
    };

    StandingClock m_clock;
    QTemporaryDir m_folder;
    Boxes m_boxes;
    Printers m_printers;
    InventedInterface *m_interface = nullptr;
    std::unique_ptr<Program> m_program;
    std::unique_ptr<MDIForm1> m_window;
};
