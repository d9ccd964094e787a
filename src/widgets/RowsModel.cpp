#include "widgets/RowsModel.h"

#include "widgets/Twips.h"

#include <QFont>
#include <QHeaderView>
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
    const QFontMetrics metrics(bold);
    for (int column = 0; column < m_columns.size(); ++column) {
        const int needed = metrics.horizontalAdvance(m_columns[column].caption) + pixels(210);
        view->setColumnWidth(column, qMax(pixels(m_columns[column].width), needed));
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
