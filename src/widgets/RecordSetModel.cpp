#include "widgets/RecordSetModel.h"

#include "archives/RecordSet.h"

#include <QAbstractItemView>
#include <QScopedValueRollback>

RecordSetModel::RecordSetModel(QList<Column> columns, QObject *parent)
    : QAbstractTableModel(parent), m_columns(std::move(columns))
{
}

void RecordSetModel::setCaptions(QList<Column> columns)
{
    m_columns = std::move(columns);
    Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

void RecordSetModel::bind(QAbstractItemView *view)
{
    m_view = view;
    view->setModel(this);
    connect(view->selectionModel(), &QItemSelectionModel::currentChanged, this, &RecordSetModel::viewMoved);
}

void RecordSetModel::setRecordSet(RecordSet *set)
{
    m_set = set;
    refresh();
}

void RecordSetModel::refresh()
{
    const int column = m_view ? qMax(0, m_view->currentIndex().column()) : 0;
    const QScopedValueRollback following(m_following, true);
    beginResetModel();
    endResetModel();
    if (m_view && m_set)
        m_view->setCurrentIndex(index(static_cast<int>(m_set->position()), column));
}

void RecordSetModel::rowChanged()
{
    const int row = static_cast<int>(m_set->position());
    Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

void RecordSetModel::viewMoved(const QModelIndex &current)
{
    if (m_set && current.isValid() && !m_following)
        m_set->moveTo(current.row());
}

int RecordSetModel::rowCount(const QModelIndex &parent) const
{
    return m_set && !parent.isValid() ? static_cast<int>(m_set->recordCount()) : 0;
}

int RecordSetModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant RecordSetModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const Column &column = m_columns[index.column()];
    if (role == Qt::TextAlignmentRole)
        return static_cast<int>(column.alignment);
    if (role != Qt::DisplayRole && role != Qt::EditRole && role != Qt::AccessibleTextRole)
        return {};
    const QString value = m_set->value(index.row(), m_set->column(column.field));
    return role == Qt::AccessibleTextRole && column.spokenAs ? column.spokenAs(value) : value;
}

QVariant RecordSetModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical)
        return QAbstractTableModel::headerData(section, orientation, role);
    const Column &column = m_columns[section];
    if (role == Qt::TextAlignmentRole)
        return static_cast<int>(column.alignment);
    if (role == Qt::AccessibleTextRole)
        return column.spokenCaption.isEmpty() ? column.caption : column.spokenCaption;
    return role == Qt::DisplayRole ? QVariant(column.caption) : QVariant();
}

Qt::ItemFlags RecordSetModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return index.isValid() && m_columns[index.column()].isEditable ? flags | Qt::ItemIsEditable : flags;
}

bool RecordSetModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !flags(index).testFlag(Qt::ItemIsEditable))
        return false;
    Q_EMIT edited(index.row(), index.column(), value.toString());
    Q_EMIT dataChanged(index, index);
    return true;
}
