#pragma once

#include <QGroupBox>

class QGridLayout;
class QLabel;

/// Labels with their boxes in a frame, as many side by side as there is room for.
class Fields : public QGroupBox
{
    Q_OBJECT

public:
    explicit Fields(QWidget *parent = nullptr);

    enum class Row { Same, New };
    /// @param row  whether the field goes on in the row of the one before it or begins another one
    void add(QLabel *label, QWidget *box, Row row = Row::Same);
    /// Arranges the fields anew where another number of them in a row is right for that width, in pixels.
    void fit(int width);

    /// As wide as with most fields in a row, however they are arranged.
    QSize sizeHint() const override;

private:
    struct Field {
        QLabel *label;
        QWidget *box;
        Row row;
    };

    void arrange(int inRow);

    QGridLayout *m_grid;
    QList<Field> m_fields;
    int m_inRow = 0;
    int m_wantedWidth = 0;
};
