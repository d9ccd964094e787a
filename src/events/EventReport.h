#pragma once

#include "reports/RuledReport.h"

class Texts;

/// The printed table of events.
class EventReport : public RuledReport
{
public:
    enum class Table {
        LastEvents, ///< EventColumns::last
        Search,     ///< EventColumns::found
    };

    /// @param rows  with the fields of @p table
    /// @param note  to stand below them, "" = none
    EventReport(Table table, const Texts &texts, Rows rows, const QString &note = {});
};
