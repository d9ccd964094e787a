#pragma once

#include <QTableView>

/// A grid as every window shows it: what is marked is a whole row, headings are bold and stand over the text of their
/// column, and the columns that stretch share what the grid is wider than its columns.
///
/// Sizes are wishes: where there is less room the grid shows some rows at least, and scrolls in both directions.
class Grid : public QTableView
{
    Q_OBJECT

public:
    explicit Grid(QWidget *parent = nullptr);

    struct Column {
        int width = 0; ///< pixels, at least; the operator can change it
        bool stretches = false;
    };
    /// To be called when the model is there.
    void setColumns(QList<Column> columns);
    /// Width of a column in which its heading fits, and a text of @p width pixels.
    int roomFor(int column, int width = 0) const;

    /// Height that is wanted for headings and rows, in pixels.
    void setWantedHeight(int height) { m_wantedHeight = height; }
    void setWantedRows(int rows) { m_wantedHeight = heightOf(rows); }
    /// Rows that are in sight however little room there is; five unless told.
    void setLeastRows(int rows) { m_leastRows = rows; }

    /// In the row that is marked, one cell is: a key acts on it.
    void setMarksCell() { m_marksCell = true; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    int heightOf(int rows) const;
    int widthOfColumns() const;
    void stretch();

    QList<Column> m_columns;
    int m_wantedHeight = 0;
    int m_leastRows = 5;
    bool m_marksCell = false;
};
