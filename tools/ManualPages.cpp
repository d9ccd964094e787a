#include "ManualPages.h"

#include "ManualText.h"
#include "PageBreaks.h"

#include <QAbstractTextDocumentLayout>
#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QTextCursor>
#include <QTextFrame>
#include <QTextTable>

#include <cmath>
#include <stdexcept>

namespace {

constexpr double pointsPerInch = 72;
constexpr int resolution = 600;
constexpr double footInches = 0.5;
constexpr double lineWidth = 0.4; ///< between the rows of a table, pixels of a screen
constexpr double pageEdge = 3;    ///< pixels of a screen
/// Of a picture, beside its size on the screen: text in it is as large as that around it.
constexpr double pictureScale = 0.78;
constexpr double inch = 0.0254;
constexpr int pixelsOfScreen = 96; ///< an inch
constexpr QRgb lineColour = 0xffb0b8c0, headColour = 0xffe8edf2, linkColour = 0xff1f4e79;

/// Lays a manual out page by page.
class Pages
{
public:
    Pages(const QString &markdown, const QDir &pictures, QPdfWriter &writer);

    QString title() const { return m_document.begin().text(); }
    QList<PrintedHeading> headings() const;
    int links() const;
    void print();

private:
    void addPicture(const QString &name, const QDir &pictures);
    void formatBlocks();
    void formatTables();
    void formatTable(QTextTable &table);
    void formatSpans();
    void breakPagesAtRules();
    void numberContents();

    qsizetype headingOf(const QString &link) const;
    /// Of the text, in the units of formats: pixels of a screen.
    double ofScreenWidth() const { return double(pixelsOfScreen) * m_writer.width() / resolution; }

    QPdfWriter &m_writer;
    QTextDocument m_document;
    QFont m_font;
};

Pages::Pages(const QString &markdown, const QDir &pictures, QPdfWriter &writer) : m_writer(writer)
{
    m_font.setFamilies(
        {QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans"), QStringLiteral("sans-serif")});
    m_font.setPointSizeF(10.5);
    m_document.setDefaultFont(m_font);
    m_document.documentLayout()->setPaintDevice(&writer);
    m_document.setMarkdown(manualText(markdown));
    // A document that is filled anew forgets its resources.
    const QStringList names = picturesIn(markdown);
    for (const QString &name : names)
        addPicture(name, pictures);
    // At either end of a page room for what a viewer rounds over the edge.
    QTextFrameFormat whole = m_document.rootFrame()->frameFormat();
    whole.setMargin(0);
    whole.setTopMargin(pageEdge);
    whole.setBottomMargin(pageEdge);
    m_document.rootFrame()->setFrameFormat(whole);
    m_document.setIndentWidth(24);
    // Laid out once.
    QTextCursor all(&m_document);
    all.beginEditBlock();
    formatBlocks();
    formatTables();
    formatSpans();
    breakPagesAtRules();
    all.endEditBlock();
    // The page number stands in a strip at the foot of the printable area.
    m_document.setPageSize(QSizeF(writer.width(), writer.height() - footInches * resolution));
    keepTogether(m_document, resolution);
    numberContents();
}

void Pages::addPicture(const QString &name, const QDir &pictures)
{
    const QString path = pictures.filePath(name + QStringLiteral(".png"));
    const QImage image(path);
    if (image.isNull())
        throw std::runtime_error("cannot read the picture " + path.toStdString());
    m_document.addResource(QTextDocument::ImageResource, QUrl(name), image);
}

void Pages::formatBlocks()
{
    for (QTextBlock block = m_document.begin(); block.isValid(); block = block.next()) {
        QTextBlockFormat format = block.blockFormat();
        if (format.headingLevel() > 0) {
            // What is emphasised in a heading would be as small as in a text.
            QTextCharFormat words;
            words.setProperty(QTextFormat::FontSizeAdjustment, 4 - format.headingLevel());
            words.setFontWeight(QFont::Bold);
            QTextCursor cursor(block);
            cursor.select(QTextCursor::BlockUnderCursor);
            cursor.mergeCharFormat(words);
        }
        if (format.headingLevel() == 1) {
            format.setTopMargin(0);
            format.setBottomMargin(12);
        } else if (format.headingLevel() > 1) {
            // Qt's own spacing lets a heading stick to the command above it.
            format.setTopMargin(16);
            format.setBottomMargin(6);
        } else if (format.hasProperty(QTextFormat::BlockCodeLanguage)) {
            format.setIndent(1);
            format.setTopMargin(4);
            format.setBottomMargin(8);
        } else {
            continue;
        }
        QTextCursor(block).setBlockFormat(format);
    }
}

void Pages::formatTables()
{
    const QList<QTextFrame *> frames = m_document.rootFrame()->childFrames();
    for (QTextFrame *frame : frames) {
        if (auto *table = qobject_cast<QTextTable *>(frame))
            formatTable(*table);
    }
}

/// Gives the columns shares of the width by the length of what stands in them, and draws lines between the rows.
void Pages::formatTable(QTextTable &table)
{
    QList<double> wishes(table.columns(), 0);
    for (int column = 0; column < table.columns(); ++column) {
        for (int row = 0; row < table.rows(); ++row) {
            const QTextTableCell cell = table.cellAt(row, column);
            const QString text = cell.firstCursorPosition().block().text();
            wishes[column] = qMax(wishes[column], std::sqrt(double(qMax<qsizetype>(text.size(), 9))));
        }
    }
    double sum = 0;
    for (const double wish : std::as_const(wishes))
        sum += wish;
    QList<QTextLength> widths;
    for (const double wish : std::as_const(wishes))
        widths.append(QTextLength(QTextLength::PercentageLength, 100 * wish / sum));
    QTextTableFormat format = table.format();
    format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
    format.setColumnWidthConstraints(widths);
    format.setBorder(0);
    format.setBorderCollapse(true);
    format.setCellPadding(3);
    format.setTopMargin(6);
    format.setBottomMargin(6);
    table.setFormat(format);
    for (int row = 0; row < table.rows(); ++row) {
        for (int column = 0; column < table.columns(); ++column) {
            QTextTableCell cell = table.cellAt(row, column);
            QTextTableCellFormat look = cell.format().toTableCellFormat();
            look.setBottomBorder(lineWidth);
            look.setBottomBorderStyle(QTextFrameFormat::BorderStyle_Solid);
            look.setBottomBorderBrush(QColor(lineColour));
            if (row == 0)
                look.setBackground(QColor(headColour));
            cell.setFormat(look);
        }
    }
}

/// Pictures get their size, links their colour.
void Pages::formatSpans()
{
    for (QTextBlock block = m_document.begin(); block.isValid(); block = block.next()) {
        // A format that is set splits and joins what the walk goes over.
        QList<std::pair<int, int>> spans;
        for (auto i = block.begin(); !i.atEnd(); ++i)
            spans.append({i.fragment().position(), i.fragment().length()});
        for (const auto &[position, length] : std::as_const(spans)) {
            QTextCursor cursor(&m_document);
            cursor.setPosition(position);
            cursor.setPosition(position + length, QTextCursor::KeepAnchor);
            QTextCharFormat format = cursor.charFormat();
            if (format.isImageFormat()) {
                QTextImageFormat picture = format.toImageFormat();
                const auto image =
                    m_document.resource(QTextDocument::ImageResource, QUrl(picture.name())).value<QImage>();
                const double ofScreen = pixelsOfScreen * image.width() / (image.dotsPerMeterX() * inch) * pictureScale;
                picture.setWidth(qMin(ofScreen, ofScreenWidth()));
                picture.setHeight(picture.width() * image.height() / image.width());
                cursor.setCharFormat(picture);
                QTextBlockFormat around = block.blockFormat();
                around.setAlignment(Qt::AlignHCenter);
                around.setTopMargin(6);
                around.setBottomMargin(10);
                cursor.setBlockFormat(around);
            } else if (format.fontFixedPitch()) {
                format.setFontFamilies({QStringLiteral("Liberation Mono"), QStringLiteral("monospace")});
                format.setFontPointSize(m_font.pointSizeF() - 0.5);
                cursor.setCharFormat(format);
            } else if (format.isAnchor()) {
                format.setAnchorHref(QLatin1Char('#') + QString::number(headingOf(format.anchorHref())));
                format.setForeground(QColor(linkColour));
                format.setFontUnderline(false);
                cursor.setCharFormat(format);
            }
        }
    }
}

/// Markdown knows no page break: a rule across the page ("---") stands for one.
void Pages::breakPagesAtRules()
{
    QTextBlock block = m_document.begin();
    while (block.isValid()) {
        const QTextBlock next = block.next();
        if (!block.blockFormat().hasProperty(QTextFormat::BlockTrailingHorizontalRulerWidth) || !next.isValid()) {
            block = next;
            continue;
        }
        QTextBlockFormat format = next.blockFormat();
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        QTextCursor cursor(block);
        cursor.movePosition(QTextCursor::NextBlock, QTextCursor::KeepAnchor);
        cursor.removeSelectedText();
        // Taking the rule away hands its format to the block that follows, so this one's is set last.
        cursor.setBlockFormat(format);
        block = cursor.block().next();
    }
}

/// The writer knows no letters beyond Latin-1 in a link: it gets the number of the heading.
qsizetype Pages::headingOf(const QString &link) const
{
    const QList<QTextBlock> headings = headingBlocks(m_document);
    for (qsizetype i = 0; i < headings.size(); ++i) {
        if (QLatin1Char('#') + anchor(headings[i].text()) == link)
            return i;
    }
    throw std::runtime_error("no heading for the link " + link.toStdString());
}

/// Writes the page numbers behind the lines of the contents, which keep their places.
void Pages::numberContents()
{
    const QList<PrintedHeading> all = headings();
    QTextOption::Tab tab;
    tab.type = QTextOption::RightTab;
    tab.position = ofScreenWidth() - 1;
    for (QTextBlock block = m_document.begin(); block.isValid(); block = block.next()) {
        const QTextCharFormat first = block.begin().atEnd() ? QTextCharFormat() : block.begin().fragment().charFormat();
        if (!first.isAnchor() || block.begin().fragment().length() != block.length() - 1 ||
            QTextCursor(block).currentTable())
            continue;
        QTextBlockFormat format = block.blockFormat();
        format.setTabPositions({tab});
        format.setBottomMargin(2);
        format.setTopMargin(2);
        QTextCursor cursor(block);
        cursor.setBlockFormat(format);
        cursor.movePosition(QTextCursor::EndOfBlock);
        cursor.insertText(QStringLiteral("\t%1").arg(all[first.anchorHref().mid(1).toInt()].page + 1));
    }
}

QList<PrintedHeading> Pages::headings() const
{
    const double margin = m_writer.pageLayout().margins(QPageLayout::Point).top();
    const double height = m_document.pageSize().height();
    QList<PrintedHeading> found;
    const QList<QTextBlock> blocks = headingBlocks(m_document);
    for (const QTextBlock &block : blocks) {
        const double y = firstLine(block).top();
        found.append({block.blockFormat().headingLevel(), block.text(), pageAt(m_document, y),
                      margin + (y - pageAt(m_document, y) * height) / resolution * pointsPerInch});
    }
    return found;
}

int Pages::links() const
{
    int count = 0;
    for (QTextBlock block = m_document.begin(); block.isValid(); block = block.next()) {
        for (auto i = block.begin(); !i.atEnd(); ++i)
            count += i.fragment().charFormat().isAnchor() ? 1 : 0;
    }
    return count;
}

void Pages::print()
{
    const qreal width = m_writer.width(), height = m_document.pageSize().height();
    QPainter painter(&m_writer);
    // Pictures of windows have sharp edges.
    painter.setRenderHint(QPainter::LosslessImageRendering);
    const int pages = m_document.pageCount();
    for (int page = 0; page < pages; ++page) {
        if (page > 0)
            m_writer.newPage();
        painter.save();
        painter.translate(0, -page * height);
        m_document.drawContents(&painter, QRectF(0, page * height, width, height));
        painter.restore();
        painter.setFont(m_font);
        painter.drawText(QRectF(0, height, width, m_writer.height() - height), Qt::AlignHCenter | Qt::AlignBottom,
                         QStringLiteral("%1 / %2").arg(page + 1).arg(pages));
    }
}

} // namespace

PrintedManual printManual(const QString &markdown, const QDir &pictures)
{
    PrintedManual manual;
    QBuffer buffer(&manual.pdf);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(resolution);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(25, 22, 25, 18), QPageLayout::Millimeter);
    writer.setCreator(QStringLiteral("Kor supervisor"));
    Pages pages(markdown, pictures, writer);
    manual.title = pages.title();
    writer.setTitle(manual.title);
    manual.headings = pages.headings();
    manual.links = pages.links();
    pages.print();
    return manual;
}
