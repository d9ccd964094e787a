#include "reports/TableReport.h"

namespace {

constexpr double topOfNextPages = 400;
constexpr QChar softHyphen(0x00AD);

/// Parts a text into its first @p width characters, at a blank where there is one, and the rest.
std::pair<QString, QString> parted(const QString &text, int width)
{
    if (text.size() <= width)
        return {text, {}};
    const qsizetype blank = text.lastIndexOf(QLatin1Char(' '), width);
    return blank > 0 ? std::pair(text.left(blank), text.mid(blank + 1)) : std::pair(text.left(width), text.mid(width));
}

} // namespace

QString TableReport::fitted(const QString &text, int width, Fit fit)
{
    switch (fit) {
    case Fit::Left:
        return text.leftJustified(width, QLatin1Char(' '), true);
    case Fit::Right:
        return text.rightJustified(width).right(width);
    case Fit::Centred:
        break;
    }
    return Centra(text, width);
}

int TableReport::characters() const
{
    int count = 0;
    for (const Column &column : m_layout.columns)
        count += column.gap + column.width;
    return count;
}

QString TableReport::headingLine(int line) const
{
    QString text;
    for (const Column &column : m_layout.columns) {
        const qsizetype blank = column.heading.indexOf(QLatin1Char(' '));
        const QString first = blank < 0 ? column.heading : column.heading.left(blank);
        const QString second = blank < 0 ? QString() : column.heading.mid(blank + 1);
        text += QString(column.gap, QLatin1Char(' ')) + Centra(line == 0 ? first : second, column.width);
    }
    return text;
}

QString TableReport::rowText(const QStringList &fields) const
{
    QString text;
    qsizetype field = 0;
    for (const Column &column : m_layout.columns) {
        const QString value = fields.value(field++);
        const QString before(column.gap, QLatin1Char(' '));
        const auto [first, rest] = column.wraps ? parted(value, column.width) : std::pair(value, QString());
        const qsizetype indent = text.size();
        text += before + fitted(first, column.width, column.fit);
        if (!rest.isEmpty())
            text += QChar(QChar::LineFeed) + QString(indent, QLatin1Char(' ')) + before +
                    fitted(rest, column.width, column.fit);
    }
    // A printer's font would show nothing for it.
    return text.replace(softHyphen, QLatin1Char('-'));
}

QString TableReport::pageNumber() const
{
    return m_layout.page + QLatin1Char(' ') + QString::number(m_page) + QStringLiteral("  ");
}

Result<bool> TableReport::step(Page &page, const QDeadlineTimer &until)
{
    if (!std::exchange(m_hasBegun, true))
        begin(page);
    while (m_next < m_rows.count) {
        const Result<QStringList> fields = m_rows.fields(m_next++);
        if (!fields)
            return fields.fault();
        printRow(page, rowText(fields.value()));
        // The next row needs two lines, and a third stays free above the page number.
        if (m_rowBottom + 3 * m_line > page.height() - m_line - FooterSpace) {
            closePage(page);
            if (!page.newPage())
                return Fault{FaultCode::InputOutput, {}};
            ++m_page;
            m_y = topOfNextPages;
            setTextFont(page);
            printHeadings(page);
        }
        if (until.hasExpired() && m_next < m_rows.count)
            return false;
    }
    closePage(page);
    printNote(page);
    return true;
}

/// There is room for another row below the last one.
void TableReport::printNote(Page &page)
{
    if (m_layout.note.isEmpty())
        return;
    setTextFont(page);
    const auto [first, rest] = parted(m_layout.note, characters());
    page.text(m_left, m_rowBottom + m_line, first);
    if (!rest.isEmpty())
        page.text(m_left, m_rowBottom + 2 * m_line, rest);
}

void TableReport::begin(Page &page)
{
    setTextFont(page);
    m_line = page.textHeight();
    m_characterWidth = page.textWidth(QString(characters(), QLatin1Char(' '))) / characters();
    m_left = (page.width() - span(characters())) / 2;
    m_y = 2 * m_line;
    page.setFont(16, true);
    const QString title = m_layout.title.toUpper();
    page.text((page.width() - page.textWidth(title)) / 2, m_y, title);
    m_y += 3 * page.textHeight();
    setTextFont(page);
    printHeadings(page);
}
