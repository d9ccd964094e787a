#pragma once

#include <QLineEdit>
#include <QPointer>
#include <QStyledItemDelegate>

#include <functional>

/// Edits the text of cells in the grid itself, and lets in only what they can hold.
class CellEditor : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// @param limit  what stays of a text
    CellEditor(std::function<QString(const QString &)> limit, QObject *parent)
        : QStyledItemDelegate(parent), m_limit(std::move(limit))
    {
    }

    /// Hands the text of the cell that is being edited to the model and ends its editing.
    void commit();

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void destroyEditor(QWidget *editor, const QModelIndex &index) const override;

Q_SIGNALS:
    /// The operator has changed the text. @param wasCut  not all of it was let in
    void typed(bool wasCut) const;

private:
    mutable QPointer<QLineEdit> m_editor;
    const std::function<QString(const QString &)> m_limit;
};
