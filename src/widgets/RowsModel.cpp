#include "widgets/RowsModel.h"

#include "widgets/Twips.h"

#include <QFont>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>

#include <limits>

RowsModel::RowsModel(QList<Column> columns, QObject *parent)
    : QAbstractTableModel(parent), m_columns(std::move(columns))
{
}

void RowsModel::bind(QTableView *view)
{
    view->setModel(this);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->setTabKeyNavigation(false);
    view->setWordWrap(false);
    view->verticalHeader()->hide();
    view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view->verticalHeader()->setDefaultSectionSize(view->fontMetrics().height() + pixels(60));
    QFont bold = view->horizontalHeader()->font();
    bold.setBold(true);
    view->horizontalHeader()->setFont(bold);
    view->horizontalHeader()->setHighlightSections(false);
    view->horizontalHeader()->setMinimumSectionSize(pixels(300));
    for (int i = 0; i < m_columns.size(); ++i) {
        const Column &column = m_columns[i];
        const int text = qMax(QFontMetrics(bold).horizontalAdvance(column.caption),
                              view->fontMetrics().horizontalAdvance(column.widest));
        view->setColumnWidth(i, qMax(pixels(column.width), text + pixels(210)));
    }
    // The view is as wide as its columns at least; what it gets beyond that, those that stretch share.
    view->setMinimumWidth(view->horizontalHeader()->length() + view->verticalScrollBar()->sizeHint().width() +
                          2 * view->frameWidth());
    for (int i = 0; i < m_columns.size(); ++i) {
        if (m_columns[i].stretches)
            view->horizontalHeader()->setSectionResizeMode(i, QHeaderView::Stretch);
    }
}

void RowsModel::setRows(qsizetype count, Row row)
{
    beginResetModel();
    m_count = qMin<qsizetype>(count, std::numeric_limits<int>::max());
    m_row = std::move(row);
    endResetModel();
}

void RowsModel::rowsChanged()
{
    if (m_count > 0)
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

int RowsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_count);
}

int RowsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant RowsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    if (role == Qt::TextAlignmentRole)
        return static_cast<int>(m_columns[index.column()].alignment);
    if (role == Qt::DisplayRole || role == Qt::AccessibleTextRole)
        return m_row(index.row()).value(index.column());
    return {};
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return m_columns[section].caption;
    return {};
}
