#include "simulator/SimulatedInterface.h"

#include <QTimer>

#include <utility>

namespace simulator {

namespace {

/// About a minute of the line.
constexpr qsizetype behindFrom = 1 << 16;

QString sentence(const Fault &fault)
{
    switch (fault.code) {
    case FaultCode::AlreadyInUse:
        return QStringLiteral("%1 exists and is no symbolic link; it is left alone").arg(fault.subject);
    case FaultCode::AccessDenied:
        return QStringLiteral("the link %1 cannot be made").arg(fault.subject);
    default:
        return QStringLiteral("the system gives no pseudo-terminal (%1)").arg(fault.subject);
    }
}

/// Bytes as the commands write them.
QString readable(const QByteArray &bytes)
{
    QString text;
    for (const char byte : bytes) {
        if (byte == '\r')
            text += QStringLiteral("\\r");
        else if (byte == '\n')
            text += QStringLiteral("\\n");
        else if (byte == '\\')
            text += QStringLiteral("\\\\");
        else if (byte >= ' ' && byte <= '~')
            text += QLatin1Char(byte);
        else
            text += QStringLiteral("\\x") + QString::fromLatin1(QByteArray(1, byte).toHex());
    }
    return text;
}

} // namespace

SimulatedInterface::SimulatedInterface(PseudoTerminal &line, PacedOutput &output, RecordSource &records,
                                       QObject *parent)
    : QObject(parent), m_line(line), m_output(output), m_records(records)
{
    connect(&m_line, &PseudoTerminal::readyRead, this, &SimulatedInterface::readQueries);
    connect(&m_line, &PseudoTerminal::writable, &m_output, &PacedOutput::resume);
    connect(&m_line, &PseudoTerminal::programCame, this,
            [this] { Q_EMIT detailed(QStringLiteral("a program has opened the line")); });
    connect(&m_line, &PseudoTerminal::programsLeft, this,
            [this] { Q_EMIT detailed(QStringLiteral("no program has the line open")); });
}

bool SimulatedInterface::plugIn()
{
    const Result<void> opened = m_line.open();
    if (!opened) {
        Q_EMIT complained(sentence(opened.fault()));
        return false;
    }
    const QString linked = m_line.link().isEmpty() ? QString() : QStringLiteral(" linked as ") + m_line.link();
    Q_EMIT told(QStringLiteral("ready on %1%2").arg(m_line.device(), linked));
    return true;
}

void SimulatedInterface::execute(const Command &command)
{
    std::visit([this](const auto &one) { run(one); }, command);
}

bool SimulatedInterface::isBehind() const
{
    return m_output.waiting() > behindFrom;
}

void SimulatedInterface::run(const SendBurst &command)
{
    Q_EMIT told(QStringLiteral("burst of %1 records").arg(command.records));
    for (int i = 0; i < command.records; ++i)
        sendNextRecord();
}

void SimulatedInterface::run(const SwitchOff &)
{
    m_on = false;
    dropWhatWaits();
    Q_EMIT told(QStringLiteral("switched off"));
}

void SimulatedInterface::run(const SwitchOn &)
{
    if (m_on) {
        Q_EMIT told(QStringLiteral("is on already"));
        return;
    }
    m_on = true;
    Q_EMIT told(QStringLiteral("switched on"));
    send(QByteArray(1, '\0'));
}

void SimulatedInterface::run(const SetFault &command)
{
    m_fault = command.fault;
    m_queriesSinceFault = 0;
    Q_EMIT told(QStringLiteral("fault %1").arg(QString::fromLatin1(faultName(m_fault))));
}

void SimulatedInterface::run(const SetProtocol &command)
{
    m_setting.protocol = command.name;
    Q_EMIT told(QStringLiteral("protocol %1").arg(readable(m_setting.protocol)));
}

void SimulatedInterface::run(const TellStatus &)
{
    const QByteArray configuration = replyBytes(m_setting, ReplyFault::None).split('\r').at(1).trimmed();
    Q_EMIT told(
        QStringLiteral("status: %1, %2, fault %3, set to \"%4\", %5 bytes to send")
            .arg(m_on ? QStringLiteral("on") : QStringLiteral("off"),
                 m_line.isOpen() ? QStringLiteral("plugged in on ") + m_line.device() : QStringLiteral("unplugged"),
                 QString::fromLatin1(faultName(m_fault)), readable(configuration))
            .arg(m_output.waiting()));
}

void SimulatedInterface::run(const Unplug &)
{
    if (!m_line.isOpen()) {
        Q_EMIT told(QStringLiteral("is unplugged already"));
        return;
    }
    m_line.close();
    dropWhatWaits();
    Q_EMIT told(QStringLiteral("unplugged"));
}

void SimulatedInterface::run(const Plug &)
{
    if (m_line.isOpen())
        Q_EMIT told(QStringLiteral("is plugged in already"));
    else
        plugIn();
}

void SimulatedInterface::readQueries()
{
    const QByteArray bytes = m_line.read();
    for (int left = m_queries.feed(bytes); left > 0; --left)
        answer();
}

void SimulatedInterface::answer()
{
    if (!m_on) {
        Q_EMIT told(QStringLiteral("query dropped: switched off"));
        return;
    }
    ++m_queriesSinceFault;
    const QString fault = QString::fromLatin1(faultName(m_fault));
    if (m_fault == ReplyFault::Silence || (m_fault == ReplyFault::Third && m_queriesSinceFault % 3 != 0)) {
        Q_EMIT told(QStringLiteral("query left without answer: fault %1").arg(fault));
    } else if (m_fault == ReplyFault::Late) {
        QTimer::singleShot(lateMilliseconds, Qt::PreciseTimer, this, [this, asked = m_interruptions] {
            if (asked == m_interruptions)
                sendReply();
        });
    } else {
        sendReply();
    }
}

void SimulatedInterface::sendReply()
{
    QByteArray reply = replyBytes(m_setting, m_fault);
    if (m_fault == ReplyFault::Garbage)
        reply = garbage(static_cast<int>(reply.size()), m_random);
    Q_EMIT told(m_fault == ReplyFault::None
                    ? QStringLiteral("query answered")
                    : QStringLiteral("query answered: fault %1").arg(QString::fromLatin1(faultName(m_fault))));
    m_output.queue(reply);
}

void SimulatedInterface::send(EventRecord record)
{
    record.interfaceDisabled = record.interfaceDisabled || m_setting.disabled;
    send(recordBytes(record));
}

void SimulatedInterface::send(const QByteArray &bytes)
{
    if (isSending()) {
        m_output.queue(bytes);
        Q_EMIT detailed(QStringLiteral("sent %1").arg(readable(bytes)));
    } else {
        Q_EMIT told(QStringLiteral("not sent, %1: %2")
                        .arg(m_on ? QStringLiteral("unplugged") : QStringLiteral("switched off"), readable(bytes)));
    }
}

void SimulatedInterface::dropWhatWaits()
{
    if (m_output.waiting() > 0)
        Q_EMIT told(QStringLiteral("%1 bytes that nobody took are dropped").arg(m_output.waiting()));
    m_output.clear();
    m_queries.reset();
    ++m_interruptions;
}

} // namespace simulator
