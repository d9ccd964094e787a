#pragma once

#include <QAbstractTableModel>
#include <QStringList>

#include <functional>

class Grid;

/// Shows rows of texts that are asked for when they come into sight, however many there are.
class RowsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    struct Column {
        QString caption;
        int width = 0; ///< twips, at least; the caption and the widest text always fit
        Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
        QString widest = {};                                   ///< a text as wide as any of the column
        bool stretches = false;                                ///< shares what the view is wider
        std::function<QString(const QString &)> spokenAs = {}; ///< where a text says nothing when it is read aloud
    };
    /// Texts of a row, one for each column; fewer read as empty ones.
    using Row = std::function<QStringList(qsizetype row)>;

    explicit RowsModel(QList<Column> columns, QObject *parent = nullptr);

    /// The same columns with other words.
    void setCaptions(QList<Column> columns);

    /// Becomes the model of @p view, which gets the columns' widths. No row is measured.
    void bind(Grid *view);
    void setRows(qsizetype count, Row row);
    /// The rows hold other texts now, in the same number.
    void rowsChanged();

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void setWidths();

    QList<Column> m_columns;
    Grid *m_view = nullptr;
    qsizetype m_count = 0;
    Row m_row;
};
