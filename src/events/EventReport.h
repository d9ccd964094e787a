#pragma once

#include "reports/TableReport.h"

class Texts;

/// The printed table of events.
class EventReport : public TableReport
{
public:
    enum class Table {
        LastEvents, ///< EventColumns::last
        Search,     ///< EventColumns::found
    };

    /// @param rows  with the fields of @p table
    EventReport(Table table, const Texts &texts, Rows rows);

private:
    void printHeadings(Page &page) override;
    void printRow(Page &page, const QString &text) override;
    void closePage(Page &page) override;

    double right() const { return m_left + span(characters()) + EdgeOverhang; }
};
