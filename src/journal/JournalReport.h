#pragma once

#include "journal/JournalRow.h"
#include "reports/RuledReport.h"

class Texts;

/// The printed rows of the service journal.
class JournalReport : public RuledReport
{
public:
    /// Day, time and words of a row, as it is listed.
    static QStringList fields(const JournalRow &row, const Texts &texts);

    /// @param rows  with fields(); @param note  stands below them
    JournalReport(const Texts &texts, Rows rows, const QString &note);
};
