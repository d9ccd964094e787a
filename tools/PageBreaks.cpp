#include "PageBreaks.h"

#include <QAbstractTextDocumentLayout>
#include <QTextCursor>
#include <QTextDocumentFragment>
#include <QTextTable>

namespace {

/// What must stand below a heading on its page, in inches: some lines of text, or the first rows of a table.
constexpr double roomBelowHeading = 1.3;
constexpr double roomBelowTable = 0.25; ///< likewise, where a table goes on on the next page

/// @param number  from 0; -1 = the last one
QRectF lineOf(const QTextBlock &block, int number)
{
    // The layout is made as far as it is asked for.
    const QPointF corner = block.document()->documentLayout()->blockBoundingRect(block).topLeft();
    const QTextLayout &lines = *block.layout();
    if (lines.lineCount() == 0)
        return {corner, QSizeF()};
    return lines.lineAt(number < 0 ? lines.lineCount() - 1 : number).rect().translated(corner);
}

double rowEnd(const QTextTable &table, int row)
{
    double end = 0;
    for (int column = 0; column < table.columns(); ++column)
        end = qMax(end, lineOf(table.cellAt(row, column).lastCursorPosition().block(), -1).bottom());
    return end;
}

class PageBreaks
{
public:
    PageBreaks(QTextDocument &document, double dotsPerInch) : m_document(document), m_inch(dotsPerInch) {}

    void make();

private:
    bool breakBeforeHeading();
    bool breakInsideTable();
    static void splitTable(QTextTable &table, int row);

    QTextDocument &m_document;
    const double m_inch;
};

/// From first to last, until nothing is torn.
void PageBreaks::make()
{
    while (breakBeforeHeading() || breakInsideTable())
        m_document.markContentsDirty(0, m_document.characterCount());
}

/// @return whether there was a heading that stands alone at the end of its page
bool PageBreaks::breakBeforeHeading()
{
    const QList<QTextBlock> headings = headingBlocks(m_document);
    for (const QTextBlock &heading : headings) {
        const int here = pageAt(m_document, firstLine(heading).top());
        const double needed = firstLine(heading).bottom() + roomBelowHeading * m_inch;
        const QTextBlock next = heading.next();
        QTextBlockFormat format = heading.blockFormat();
        if ((pageAt(m_document, needed) == here &&
             (!next.isValid() || pageAt(m_document, firstLine(next).bottom()) == here)) ||
            format.pageBreakPolicy() == QTextFormat::PageBreak_AlwaysBefore)
            continue;
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        QTextCursor(heading).setBlockFormat(format);
        return true;
    }
    return false;
}

/// @return whether there was a row that does not stand on the page on which its table begins
bool PageBreaks::breakInsideTable()
{
    const QList<QTextFrame *> frames = m_document.rootFrame()->childFrames();
    for (QTextFrame *frame : frames) {
        auto *table = qobject_cast<QTextTable *>(frame);
        if (!table)
            continue;
        const int first = pageAt(m_document, firstLine(table->cellAt(0, 0).firstCursorPosition().block()).top());
        int row = 1;
        while (row < table->rows() && pageAt(m_document, rowEnd(*table, row)) == first)
            ++row;
        if (row == table->rows())
            continue;
        // Between two tables there is a line, which needs its room as well.
        while (row > 1 && pageAt(m_document, rowEnd(*table, row - 1) + roomBelowTable * m_inch) != first)
            --row;
        if (row > 1) {
            splitTable(*table, row);
        } else {
            QTextTableFormat format = table->format();
            format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
            table->setFormat(format);
        }
        return true;
    }
    return false;
}

/// Takes the rows from @p row on into a table of their own, with the same head, on the next page.
void PageBreaks::splitTable(QTextTable &table, int row)
{
    const int moved = table.rows() - row;
    QTextTableFormat format = table.format();
    format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    QTextCursor after = table.lastCursorPosition();
    after.movePosition(QTextCursor::NextBlock);
    QTextTable *rest = after.insertTable(moved + 1, table.columns(), format);
    for (int to = 0; to <= moved; ++to) {
        const int from = to == 0 ? 0 : row + to - 1;
        for (int column = 0; column < table.columns(); ++column) {
            const QTextTableCell cell = table.cellAt(from, column);
            QTextCursor content = cell.firstCursorPosition();
            content.setPosition(cell.lastPosition(), QTextCursor::KeepAnchor);
            QTextTableCell target = rest->cellAt(to, column);
            target.setFormat(cell.format());
            target.firstCursorPosition().insertFragment(content.selection());
        }
    }
    table.removeRows(row, moved);
}

} // namespace

QList<QTextBlock> headingBlocks(const QTextDocument &document)
{
    QList<QTextBlock> found;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() > 0)
            found.append(block);
    }
    return found;
}

QRectF firstLine(const QTextBlock &block)
{
    return lineOf(block, 0);
}

int pageAt(const QTextDocument &document, double y)
{
    return int(y / document.pageSize().height());
}

void keepTogether(QTextDocument &document, double dotsPerInch)
{
    PageBreaks(document, dotsPerInch).make();
}
