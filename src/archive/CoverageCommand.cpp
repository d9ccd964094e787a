#include "archive/CoverageCommand.h"

#include "journal/CoverageWords.h"
#include "texts/OwnText.h"

#include <array>

namespace tool {

namespace {

constexpr std::array spanWidths = {25, 25, 10, 20};

QString localText(qint64 seconds)
{
    const QDateTime local = QDateTime::fromSecsSinceEpoch(seconds);
    return local.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")) + QLatin1String(offsetOf(local));
}

} // namespace

const char *nameOf(Listening state)
{
    switch (state) {
    case Listening::NotRunning:
        return "not_running";
    case Listening::PortNotOpen:
        return "port_not_open";
    case Listening::PortLost:
        return "port_lost";
    case Listening::InterfaceSilent:
        return "interface_silent";
    case Listening::EventsNotStored:
        return "events_not_stored";
    case Listening::NotKnown:
        return "not_known";
    case Listening::Listened:
        break;
    }
    return "listened";
}

QByteArray coverageLines(const QList<CoveredSpan> &spans, const LineForm &form, const Texts &texts)
{
    QByteArray lines;
    if (form.format == Format::Table)
        lines = tableLine({texts[Text::FasciaDa], texts[Text::FasciaA]}, spanWidths, form.width);
    for (const CoveredSpan &span : spans) {
        const QString from = localText(span.from);
        const QString to = localText(span.to);
        const QByteArray seconds = QByteArray::number(span.to - span.from);
        if (form.format == Format::Json)
            lines += "{\"from\":" + jsonText(from.toLatin1()) + ",\"to\":" + jsonText(to.toLatin1()) +
                     ",\"seconds\":" + seconds + ",\"state\":" + jsonText(nameOf(span.state)) + "}\n";
        else
            lines += tableLine({from, to, durationWords(span.to - span.from, texts), listeningWords(span.state, texts)},
                               spanWidths, form.width);
    }
    return lines;
}

CoverageCommand::CoverageCommand(const Site &site, QDate firstDay, QDate lastDay, const LineForm &form, Output &output)
    : m_site(site),
      m_firstDay(firstDay),
      m_lastDay(lastDay),
      m_form(form),
      m_pending(output),
      m_reading(site.archives, firstDay.year(), lastDay.year(), Database::Use::Untouched)
{
}

QByteArray CoverageCommand::lines()
{
    if (m_reading.unread())
        m_site.tell({OwnText::ToolJournalUnread, {}, m_reading.unread()});
    SecondsRange range = secondsOf(m_firstDay.startOfDay(), QDateTime(m_lastDay, QTime(23, 59, 59)));
    // What is to come is not known by anybody.
    range.to = qMin(range.to, m_site.clock.now().toSecsSinceEpoch());
    return range.from < range.to
               ? coverageLines(coverage(m_reading.content(), range.from, range.to), m_form, m_site.texts)
               : QByteArray();
}

Result<bool> CoverageCommand::step(const QDeadlineTimer &until)
{
    if (!m_isRead) {
        // Never left half way: no file stays open while something is written.
        (void)finish(m_reading);
        m_isRead = true;
        m_pending.add(lines());
    }
    const Result<bool> written = m_pending.write(until);
    return written && written.value() ? m_pending.end() : written;
}

} // namespace tool
