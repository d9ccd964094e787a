#pragma once

#include "texts/Notices.h"
#include "widgets/Messages.h"

/// Boxes over the main window, one at a time: notices first, then what else is to be told, asked or done, in its order.
/// While the window is disabled none is shown.
class BoxQueue : public QObject
{
    Q_OBJECT

public:
    using Then = std::function<void()>;

    /// What the boxes say; all must outlive the queue.
    struct Source {
        Messages &messages;
        Notices &notices;
        const Texts &texts;
    };

    BoxQueue(QWidget &over, Source source);

    /// Tells something grave. @param then  called when the operator has closed the box
    void tell(const QString &text, Then then = {});
    /// Asks whether something may be ended. @param question  made when it is asked
    void ask(std::function<Message()> question, std::function<void(bool isYes)> then);
    /// Calls @p then when no box stands any more; at once, perhaps.
    void whenTold(Then then);
    /// Tells the last thing of all, whatever box stands.
    void tellLast(Icon icon, const QString &text, Then then);
    /// The window may have been enabled.
    void showNext();

private:
    void enqueue(Then show);
    void show(Icon icon, const QString &text, const Then &then);

    QWidget &m_over;
    const Source m_source;
    QList<Then> m_waiting; ///< for the box that stands
    bool m_isShown = false;
};
