#pragma once

#include <QAbstractTableModel>
#include <QPointer>

#include <functional>

class QAbstractItemView;
class RecordSet;

/// Binds a record set to a view: shows its rows, and keeps the current row of both the same.
///
/// It changes nothing. Whoever changes the set says so here: refresh() after rows came or went or another one became
/// current, rowChanged() after new values in the current row.
class RecordSetModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    struct Column {
        QString field;
        QString caption;
        QString spokenCaption = {};                            ///< where the caption is an abbreviation
        std::function<QString(const QString &)> spokenAs = {}; ///< where a value says nothing when it is read aloud
        Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
        bool isEditable = false;
    };

    explicit RecordSetModel(QList<Column> columns, QObject *parent = nullptr);

    /// The same columns with other words.
    void setCaptions(QList<Column> columns);

    /// Becomes the model of @p view.
    void bind(QAbstractItemView *view);
    /// @param set  must live until another one, or none (null), is set
    void setRecordSet(RecordSet *set);

    void refresh();
    void rowChanged();

    /// The view is being moved to the row of the set, by no wish of the operator.
    bool isFollowing() const { return m_following; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

Q_SIGNALS:
    /// The operator has typed into a cell: to be stored by whoever changes the set.
    void edited(int row, int column, const QString &text);

private:
    void viewMoved(const QModelIndex &current);

    QList<Column> m_columns;
    RecordSet *m_set = nullptr;
    QPointer<QAbstractItemView> m_view;
    bool m_following = false;
};
