#include "widgets/Fields.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

namespace {

constexpr int mostInRow = 4;

}

Fields::Fields(QWidget *parent) : QGroupBox(parent), m_grid(new QGridLayout(this))
{
}

void Fields::add(QLabel *label, QWidget *box, Row row)
{
    m_fields.append({label, box, row});
    arrange(mostInRow);
}

void Fields::fit(int width)
{
    const int before = m_inRow;
    int inRow = mostInRow;
    // What an arrangement needs is known when it is made.
    arrange(inRow);
    m_wantedWidth = QGroupBox::sizeHint().width();
    for (; inRow > 1 && m_grid->totalMinimumSize().width() > width; arrange(inRow))
        --inRow;
    if (inRow != before)
        updateGeometry();
}

QSize Fields::sizeHint() const
{
    return QGroupBox::sizeHint().expandedTo({m_wantedWidth, 0});
}

void Fields::arrange(int inRow)
{
    if (inRow == m_inRow && m_grid->count() == 2 * m_fields.size())
        return;
    while (QLayoutItem *item = m_grid->takeAt(0))
        delete item;
    m_inRow = inRow;
    for (int i = 0; i < mostInRow; ++i)
        m_grid->setColumnStretch(2 * i + 1, i < inRow ? 1 : 0);
    int row = 0;
    int place = 0;
    for (qsizetype i = 0; i < m_fields.size(); ++i) {
        if (place == inRow || (place > 0 && m_fields[i].row == Row::New)) {
            ++row;
            place = 0;
        }
        const bool isLast = i + 1 == m_fields.size() || m_fields[i + 1].row == Row::New;
        m_grid->addWidget(m_fields[i].label, row, 2 * place);
        // The last of its kind takes what is left of the row; what is typed is as long there as in the box before it.
        const bool takesRest = isLast && !qobject_cast<QLineEdit *>(m_fields[i].box);
        m_grid->addWidget(m_fields[i].box, row, 2 * place + 1, 1, takesRest ? 2 * (inRow - place) - 1 : 1);
        ++place;
    }
}
