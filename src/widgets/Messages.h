#pragma once

#include "texts/Texts.h"

#include <QString>

#include <functional>

class QWidget;

/// Message boxes. None of them waits: what is to happen afterwards is called when the operator has closed the box, and
/// reception goes on behind it.
///
/// A box that waited would run an event loop in the middle of whatever opened it: records, timers and a lost port would
/// come in there, and closing the program would have to unwind it.
class Messages
{
public:
    enum class Answer { Yes, No, Cancel };
    enum class Buttons {
        YesNo,       ///< Yes destroys something or ends it: Enter means No
        YesNoCancel, ///< whether to keep work: Enter means Yes
    };

    /// @param title  of every box
    explicit Messages(QString title = {}) : m_title(std::move(title)) {}
    virtual ~Messages() = default;
    Messages(const Messages &) = delete;
    Messages &operator=(const Messages &) = delete;

    void setTitle(const QString &title) { m_title = title; }

    /// @param over  window that is blocked by the box; when it goes, the box goes and nothing is called
    /// @param text  plain text, several lines are possible
    virtual void show(QWidget *over, Icon icon, const QString &text, std::function<void()> then = {});
    /// A question; closing the box by its frame or Esc answers No, or Cancel where there is one.
    virtual void ask(QWidget *over, const QString &text, Buttons buttons, std::function<void(Answer)> then);
    /// A choice between two ways on; Enter, Esc and the frame choose the first.
    /// @param then  told whether it was the second
    virtual void choose(QWidget *over, const QString &text, const QString &first, const QString &second,
                        std::function<void(bool)> then);

private:
    QString m_title;
};
