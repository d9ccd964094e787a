#pragma once

#include "reports/Page.h"
#include "startup/PlainText.h"

#include <QStringList>

#include <functional>

/// A printed table: a title on the first page, column headings and a page number on every page, one row of text in two
/// lines' height.
class TableReport : public Report
{
public:
    /// What is printed, as it stands when the print begins.
    struct Rows {
        qsizetype count = 0;
        /// Fields of row @p index, in the order of the columns; asked for once each, from 0 upwards. A fault ends the
        /// print.
        std::function<Result<QStringList>(qsizetype index)> fields;
    };
    using Fit = ::Fit;
    struct Column {
        int width; ///< in characters
        Fit fit;
        QString heading; ///< its first blank parts it into the two lines of the headings
        int gap = 1;     ///< blanks before it
        /// What does not fit goes on in the other line of its row, behind a LineFeed. For the last column.
        bool wraps = false;
    };
    struct Layout {
        QList<Column> columns;
        QString title;
        QString page; ///< word before the page number
        /// Stands below the last row, in two lines at most; "" = nothing does.
        QString note = {};
    };

    Result<bool> step(Page &page, const QDeadlineTimer &until) override;

    /// @p text in a column: cut or padded, but that a centred text is never cut.
    static QString fitted(const QString &text, int width, Fit fit);

protected:
    TableReport(Layout layout, Rows rows) : m_layout(std::move(layout)), m_rows(std::move(rows)) {}

    static constexpr double EdgeOverhang = 30; ///< of bands and rules past the characters that they enclose
    static constexpr double FooterSpace = 100; ///< kept free above the line of the page number

    /// Prints the headings from m_y of this page on, and leaves m_y where the first row begins.
    virtual void printHeadings(Page &page) = 0;
    virtual void printRow(Page &page, const QString &text) = 0;
    /// Draws what spans all rows of this page, and its page number. The font afterwards does not matter.
    virtual void closePage(Page &page) = 0;

    const Layout &layout() const { return m_layout; }
    /// Characters of a row.
    int characters() const;
    /// First or second line of the headings.
    QString headingLine(int line) const;
    QString rowText(const QStringList &fields) const;
    /// "Page 1  ": the blanks keep the number off the edge.
    QString pageNumber() const;
    /// Width of @p count characters of the 10 point font.
    double span(int count) const { return m_characterWidth * count; }

    static void setTextFont(Page &page, bool isBold = false) { page.setFont(10, isBold); }

    double m_left = 0;      ///< edge of the table
    double m_y = 0;         ///< of the next line
    double m_line = 0;      ///< height of a line of 10 points
    double m_tableTop = 0;  ///< on this page, where its vertical rules begin
    double m_rowBottom = 0; ///< of the last row, or of the headings, on this page

private:
    void begin(Page &page);
    void printNote(Page &page);

    const Layout m_layout;
    const Rows m_rows;
    double m_characterWidth = 0;
    bool m_hasBegun = false;
    qsizetype m_next = 0;
    int m_page = 1;
};
