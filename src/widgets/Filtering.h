#pragma once

#include <QLineEdit>

/// Replaces the text of @p box by what @p accept makes of it, and keeps the caret behind the same characters.
template<class Accept>
void keepAccepted(QLineEdit *box, Accept accept)
{
    const QString typed = box->text();
    const QString accepted = accept(typed);
    if (accepted == typed)
        return;
    const QString before = accept(typed.left(box->cursorPosition()));
    box->setText(accepted);
    box->setCursorPosition(static_cast<int>(before.size()));
}
