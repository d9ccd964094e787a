#include "mainwindow/MDIForm1.h"

#include <cstdio>

// Events that wait: what the status bar says of them, and what becomes of them at the end of the program.

namespace {

/// How long the last message stands when it is the system that ends the program.
constexpr int lastMessageMilliseconds = 10'000;

} // namespace

void MDIForm1::showWaiting()
{
    const std::optional<Message> waits = m_program.log().waits();
    // Why they wait says more than how many do.
    StatusBar1->showRemark(!m_registerWait.isEmpty() ? m_registerWait
                           : waits                   ? m_program.texts().sentence(*waits)
                                                     : QString());
}

/// Asks before events are lost that are in memory only. @return true when the program does not end, as yet
bool MDIForm1::asksAboutEvents()
{
    EventLog &log = m_program.log();
    log.retry();
    if (m_lossIsAgreed || log.unsaved() == 0)
        return false;
    if (std::exchange(m_lossIsAsked, true))
        return true;
    whenTold([this] { askToLose(); });
    return true;
}

void MDIForm1::askToLose()
{
    EventLog &log = m_program.log();
    const Message question{OwnText::AskEndEventsLost, {QString::number(log.unsaved())}, {}};
    m_boxIsShown = true;
    m_messages.ask(this, m_program.texts().sentence(question), Messages::Buttons::YesNo,
                   [this](Messages::Answer answer) {
                       m_boxIsShown = false;
                       m_lossIsAsked = false;
                       m_lossIsAgreed = answer == Messages::Answer::Yes;
                       if (m_lossIsAgreed)
                           close();
                       else
                           closeRefused();
                       m_lossIsAgreed = false;
                       showNext();
                   });
}

/// When the program has ended: tells what was found out at the very end, and closes when the operator has read it.
/// @return true as long as he has not
bool MDIForm1::tellsWhatIsLeft()
{
    QStringList sentences;
    bool isGrave = false;
    while (!m_program.notices().isEmpty()) {
        const Notice notice = m_program.notices().take();
        isGrave = isGrave || notice.icon == Icon::Critical;
        sentences.append(m_program.texts().sentence(notice.message));
        std::fprintf(stderr, "kor-supervisor: %s\n", sentences.constLast().toUtf8().constData());
    }
    // The system is not held up for less than a loss.
    if (sentences.isEmpty() || (m_ending && !isGrave))
        return false;
    m_messages.show(this, isGrave ? Icon::Critical : Icon::Exclamation, sentences.join(QStringLiteral("\r\n")),
                    [this] { close(); });
    if (m_ending)
        QTimer::singleShot(lastMessageMilliseconds, this, &QWidget::close);
    m_ending = true;
    return true;
}
