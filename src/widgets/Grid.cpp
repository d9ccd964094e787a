#include "widgets/Grid.h"

#include "widgets/Twips.h"

#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>

namespace {

constexpr int leastCharacters = 30; ///< in sight, of all columns together
constexpr int cellFrame = 2;

} // namespace

Grid::Grid(QWidget *parent) : QTableView(parent)
{
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + pixels(60));
    QHeaderView *headings = horizontalHeader();
    QFont bold = headings->font();
    bold.setBold(true);
    headings->setFont(bold);
    headings->setHighlightSections(false);
    headings->setSectionsClickable(false);
    headings->setMinimumSectionSize(pixels(300));
}

void Grid::setColumns(QList<Column> columns)
{
    m_columns = std::move(columns);
    for (int i = 0; i < m_columns.size(); ++i)
        setColumnWidth(i, m_columns[i].width);
    stretch();
    updateGeometry();
}

int Grid::roomFor(int column, int width) const
{
    return qMax(horizontalHeader()->sectionSizeHint(column) + pixels(90), width + pixels(210));
}

int Grid::heightOf(int rows) const
{
    const int headings = qMax(horizontalHeader()->sizeHint().height(), horizontalHeader()->minimumHeight());
    return headings + rows * verticalHeader()->defaultSectionSize() + 2 * frameWidth();
}

int Grid::widthOfColumns() const
{
    int width = verticalScrollBar()->sizeHint().width() + 2 * frameWidth();
    for (const Column &column : m_columns)
        width += column.width;
    return width;
}

QSize Grid::sizeHint() const
{
    return QSize(widthOfColumns(), m_wantedHeight).expandedTo(minimumSizeHint());
}

QSize Grid::minimumSizeHint() const
{
    return {qMin(widthOfColumns(), fontMetrics().averageCharWidth() * leastCharacters), heightOf(m_leastRows)};
}

void Grid::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    stretch();
}

void Grid::stretch()
{
    int room = viewport()->width();
    QList<int> sharing;
    for (int i = 0; i < m_columns.size(); ++i) {
        room -= m_columns[i].stretches ? m_columns[i].width : columnWidth(i);
        if (m_columns[i].stretches)
            sharing.append(i);
    }
    while (!sharing.isEmpty()) {
        const int share = qMax(0, room / static_cast<int>(sharing.size()));
        const int column = sharing.takeFirst();
        setColumnWidth(column, m_columns[column].width + share);
        room -= share;
    }
}

void Grid::paintEvent(QPaintEvent *event)
{
    QTableView::paintEvent(event);
    if (!m_marksCell || !hasFocus() || !currentIndex().isValid())
        return;
    QPainter painter(viewport());
    painter.setPen(QPen(palette().color(QPalette::HighlightedText), cellFrame));
    painter.drawRect(visualRect(currentIndex()).adjusted(cellFrame, cellFrame, -cellFrame, -cellFrame));
}
