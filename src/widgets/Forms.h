#pragma once

#include "widgets/Twips.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

// What the small forms have in common.

/// Buttons at the right end of a line.
inline QHBoxLayout *buttonRow(std::initializer_list<QPushButton *> buttons)
{
    auto *row = new QHBoxLayout;
    row->addStretch();
    for (QPushButton *button : buttons)
        row->addWidget(button);
    return row;
}

/// A form of one line: the line and, below it, its buttons.
inline void arrange(QWidget *form, QHBoxLayout *line, std::initializer_list<QPushButton *> buttons)
{
    line->addStretch();
    auto *rows = new QVBoxLayout(form);
    rows->addLayout(line);
    rows->addSpacing(pixels(120));
    rows->addStretch();
    rows->addLayout(buttonRow(buttons));
}

/// A box for a number of a few digits.
inline void makeNumberBox(QLineEdit *box)
{
    box->setAlignment(Qt::AlignRight);
    box->setFixedWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("0000000")) + pixels(180));
}

/// Makes room for a title that is longer than any line below it: it stands between the buttons of the frame.
inline void fitTitle(QWidget *form)
{
    form->setMinimumWidth(form->fontMetrics().horizontalAdvance(form->windowTitle()) + pixels(2250));
}

/// Sentences, each in a line of its own where all of them are wider than @p width, in pixels.
inline QString inLines(QString sentences, const QFontMetrics &metrics, int width)
{
    if (metrics.horizontalAdvance(sentences) > width)
        sentences.replace(QStringLiteral(". "), QStringLiteral(".\n"));
    return sentences;
}
