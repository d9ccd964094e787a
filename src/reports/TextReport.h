#pragma once

#include "reports/Page.h"

#include <QStringList>

/// A text printed as it is, line below line in 10 points; lines that are too long for the page go on below.
class TextReport : public Report
{
public:
    explicit TextReport(QStringList lines) : m_lines(std::move(lines)) {}

    Result<bool> step(Page &page, const QDeadlineTimer &until) override;

private:
    const QStringList m_lines;
    qsizetype m_next = 0;
    qsizetype m_printed = 0; ///< characters of the next line that are printed already
    double m_y = 0;
};
