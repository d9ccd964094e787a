#include "widgets/CellEditor.h"

#include "widgets/Filtering.h"

QWidget *CellEditor::createEditor(QWidget *parent, const QStyleOptionViewItem & /*option*/,
                                  const QModelIndex &index) const
{
    auto *editor = new QLineEdit(parent);
    editor->setFrame(false);
    editor->setAccessibleName(index.model()->headerData(index.column(), Qt::Horizontal).toString());
    connect(editor, &QLineEdit::textEdited, this, [this, editor](const QString &text) {
        keepAccepted(editor, m_limit);
        Q_EMIT typed(editor->text() != text);
    });
    m_editor = editor;
    return editor;
}

void CellEditor::destroyEditor(QWidget *editor, const QModelIndex &index) const
{
    // It lives on for a moment, but the grid knows it no longer.
    m_editor = nullptr;
    QStyledItemDelegate::destroyEditor(editor, index);
}

void CellEditor::commit()
{
    if (!m_editor)
        return;
    QLineEdit *editor = m_editor;
    Q_EMIT commitData(editor);
    Q_EMIT closeEditor(editor);
}
