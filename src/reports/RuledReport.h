#pragma once

#include "reports/TableReport.h"

/// A printed table with a grey band behind its headings, a rule below each row and one beside each column.
class RuledReport : public TableReport
{
public:
    RuledReport(Layout layout, Rows rows) : TableReport(std::move(layout), std::move(rows)) {}

private:
    void printHeadings(Page &page) override;
    void printRow(Page &page, const QString &text) override;
    void closePage(Page &page) override;

    double right() const { return m_left + span(characters()) + EdgeOverhang; }
};
