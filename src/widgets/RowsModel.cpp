#include "widgets/RowsModel.h"

#include "widgets/Grid.h"
#include "widgets/Twips.h"

#include <limits>

RowsModel::RowsModel(QList<Column> columns, QObject *parent)
    : QAbstractTableModel(parent), m_columns(std::move(columns))
{
}

void RowsModel::setCaptions(QList<Column> columns)
{
    m_columns = std::move(columns);
    Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
    setWidths();
}

void RowsModel::bind(Grid *view)
{
    m_view = view;
    view->setModel(this);
    setWidths();
}

void RowsModel::setWidths()
{
    QList<Grid::Column> columns;
    for (int i = 0; i < m_columns.size(); ++i) {
        const Column &column = m_columns[i];
        const int text = m_view->fontMetrics().horizontalAdvance(column.widest);
        columns.append({qMax(pixels(column.width), m_view->roomFor(i, text)), column.stretches});
    }
    m_view->setColumns(std::move(columns));
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
    const Column &column = m_columns[index.column()];
    if (role == Qt::TextAlignmentRole)
        return static_cast<int>(column.alignment);
    if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole)
        return {};
    const QStringList texts = m_row(index.row());
    const QString text = texts.value(index.column());
    // A row without texts is blank: nothing is marked in it, nor not marked.
    return role == Qt::AccessibleTextRole && column.spokenAs && !texts.isEmpty() ? column.spokenAs(text) : text;
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical)
        return {};
    if (role == Qt::TextAlignmentRole)
        return static_cast<int>(m_columns[section].alignment);
    return role == Qt::DisplayRole ? QVariant(m_columns[section].caption) : QVariant();
}
