#pragma once

#include "texts/Texts.h"

#include <QList>
#include <QObject>

struct Notice {
    Icon icon = Icon::Information;
    Message message;
};

/// Messages to the operator that arise where nothing may wait for him: they queue here until the window or the console
/// takes them.
class Notices : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    void post(Icon icon, Message message);
    bool isEmpty() const { return m_queue.isEmpty(); }
    /// The oldest notice; only when there is one.
    Notice take() { return m_queue.takeFirst(); }

Q_SIGNALS:
    void posted();

private:
    QList<Notice> m_queue;
};
