#pragma once

#include <QLineEdit>
#include <QStyleOptionFrame>

/// A box that shows something and cannot be typed into: it looks so, in whatever colours the window has.
class ReadOnlyBox : public QLineEdit
{
    Q_OBJECT

public:
    explicit ReadOnlyBox(QWidget *parent = nullptr) : QLineEdit(parent) { setReadOnly(true); }

protected:
    void initStyleOption(QStyleOptionFrame *option) const override
    {
        QLineEdit::initStyleOption(option);
        option->palette.setBrush(QPalette::Base, option->palette.window());
    }
};
