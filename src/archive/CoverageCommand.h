#pragma once

#include "archive/Command.h"
#include "archive/EventLines.h"
#include "archive/Output.h"
#include "journal/JournalReading.h"

namespace tool {

/// A name for scripts, in English letters without blanks: "listened", "port_lost".
const char *nameOf(Listening state);

/// The spans in lines of their own, in local time; the table has a line of captions.
QByteArray coverageLines(const QList<CoveredSpan> &spans, const LineForm &form, const Texts &texts);

/// Tells for a range of days when the supervisor listened, and why not.
class CoverageCommand : public Command
{
public:
    /// All must outlive this object.
    CoverageCommand(const Site &site, QDate firstDay, QDate lastDay, const LineForm &form, Output &output);

    Result<bool> step(const QDeadlineTimer &until) override;
    bool hasFaults() const override { return m_reading.unread().has_value(); }

private:
    QByteArray lines();

    const Site m_site;
    const QDate m_firstDay;
    const QDate m_lastDay;
    const LineForm m_form;
    Pending m_pending;
    JournalReading m_reading;
    bool m_isRead = false;
};

} // namespace tool
