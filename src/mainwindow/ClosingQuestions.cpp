#include "mainwindow/ClosingQuestions.h"

#include "texts/OwnText.h"

#include <cstdio>

namespace {

/// How long the last message stands when it is the system that ends the program.
constexpr int lastMessageMilliseconds = 10'000;

} // namespace

bool ClosingQuestions::maySupervisionEnd()
{
    if (m_endIsAgreed || !m_program.serial().portOpen())
        return true;
    if (std::exchange(m_endIsAsked, true))
        return false;
    m_boxes.ask(
        [] {
            return Message{OwnText::AskEndSupervision, {}, {}};
        },
        [this](bool isYes) {
            m_endIsAsked = false;
            m_endIsAgreed = isYes;
            if (isYes)
                Q_EMIT mayGoOn();
        });
    return false;
}

bool ClosingQuestions::mayEventsBeLost()
{
    EventLog &log = m_program.log();
    log.retry();
    if (m_lossIsAgreed || log.unsaved() == 0)
        return true;
    if (std::exchange(m_lossIsAsked, true))
        return false;
    m_boxes.ask(
        [&log] {
            return Message{OwnText::AskEndEventsLost, {QString::number(log.unsaved())}, {}};
        },
        [this](bool isYes) {
            m_lossIsAsked = false;
            m_lossIsAgreed = isYes;
            if (isYes)
                Q_EMIT mayGoOn();
            else
                Q_EMIT calledOff();
            m_lossIsAgreed = false;
        });
    return false;
}

bool ClosingQuestions::tellRest(bool isHeldUp)
{
    QStringList sentences;
    bool isGrave = false;
    while (!m_program.notices().isEmpty()) {
        const Notice notice = m_program.notices().take();
        isGrave = isGrave || notice.icon == Icon::Critical;
        sentences.append(m_program.texts().sentence(notice.message));
        std::fprintf(stderr, "kor-supervisor: %s\n", sentences.constLast().toUtf8().constData());
    }
    if (sentences.isEmpty() || (isHeldUp && !isGrave))
        return false;
    m_boxes.tellLast(isGrave ? Icon::Critical : Icon::Exclamation, sentences.join(QStringLiteral("\r\n")),
                     [this] { Q_EMIT mayGoOn(); });
    if (isHeldUp)
        QTimer::singleShot(lastMessageMilliseconds, this, &ClosingQuestions::mayGoOn);
    return true;
}
