#pragma once

#include "platform/PseudoTerminal.h"
#include "simulator/Commands.h"
#include "simulator/PacedOutput.h"
#include "simulator/QueryDetector.h"
#include "simulator/RecordSource.h"

#include <QObject>
#include <QRandomGenerator>

namespace simulator {

/// The interface itself: answers queries as its settings and its fault say, and carries out commands. Switched on and
/// not plugged in at first.
class SimulatedInterface : public QObject
{
    Q_OBJECT

public:
    /// @param line, output, records  must outlive this object; @p output writes to @p line
    SimulatedInterface(PseudoTerminal &line, PacedOutput &output, RecordSource &records, QObject *parent = nullptr);

    void setSetting(const InterfaceSetting &setting) { m_setting = setting; }

    /// Opens the line. @return false when that is not possible; complained() has said why
    bool plugIn();
    /// Carries out any command; Wait is left to who holds the commands, and does nothing here.
    void execute(const Command &command);
    void sendNextRecord() { send(m_records.next()); }

    /// Switched on and plugged in: what is sent gets onto the wire.
    bool isSending() const { return m_on && m_line.isOpen(); }
    /// A program has the line open.
    bool hasProgram() const { return m_line.hasProgram(); }
    /// All that was sent has left.
    bool isIdle() const { return m_output.waiting() == 0; }
    /// All that was sent has been read by a program.
    bool isSettled() const { return isIdle() && m_line.unread() == 0; }
    /// More waits for the wire than is sensible to add to.
    bool isBehind() const;
    int millisecondsToGo() const { return m_output.millisecondsToGo(); }

Q_SIGNALS:
    void told(const QString &line);       ///< what it does
    void detailed(const QString &line);   ///< the same for each record, and for programs that come and leave
    void complained(const QString &line); ///< what it could not do
    void quitAsked();

private:
    void run(const SendRecord &command) { send(command.record); }
    void run(const SendBytes &command) { send(command.bytes); }
    void run(const SendBurst &command);
    void run(const SwitchOff &command);
    void run(const SwitchOn &command);
    void run(const SetFault &command);
    void run(const SetProtocol &command);
    void run(const Wait &) {}
    void run(const TellStatus &command);
    void run(const Unplug &command);
    void run(const Plug &command);
    void run(const Quit &) { Q_EMIT quitAsked(); }

    void readQueries();
    void answer();
    void sendReply();
    void send(EventRecord record);
    void send(const QByteArray &bytes);
    void dropWhatWaits();

    PseudoTerminal &m_line;
    PacedOutput &m_output;
    RecordSource &m_records;
    InterfaceSetting m_setting;
    ReplyFault m_fault = ReplyFault::None;
    bool m_on = true;
    int m_queriesSinceFault = 0;
    int m_interruptions = 0; ///< how often power or line went away; a late answer does not survive it
    QueryDetector m_queries;
    QRandomGenerator m_random; ///< the same garbage in each run, so that what it did can be seen again
};

} // namespace simulator
