#pragma once

#include "platform/SortInTurns.h"
#include "platform/Task.h"

#include <QList>
#include <QString>

#include <functional>

/// A person in a list of names.
struct NameEntry {
    QString key; ///< nameKey() of the text
    QString text;
    qint64 id = 0;
};

/// Lists those people who have a name, sorted by it as nameKey() says, those of one name by their codes.
class NameSort : public Task
{
public:
    struct Person {
        QString name; ///< "" = is not listed
        QString code;
        qint64 id = 0;
    };

    /// @param count   of the people; asked for with each step
    /// @param person  one of them, from 0; asked for once each
    NameSort(std::function<qsizetype()> count, std::function<Person(qsizetype)> person);

    Result<bool> step(const QDeadlineTimer &until) override;
    Progress progress() const override { return {m_next, m_count()}; }

    /// The list, once it is done; afterwards it is gone from here.
    QList<NameEntry> take();

private:
    struct Item {
        NameEntry entry;
        QString code;
    };
    struct Before {
        bool operator()(const Item &a, const Item &b) const
        {
            const int order = a.entry.key.compare(b.entry.key);
            return order != 0 ? order < 0 : a.code < b.code;
        }
    };

    const std::function<qsizetype()> m_count;
    const std::function<Person(qsizetype)> m_person;
    qsizetype m_next = 0;
    SortInTurns<Item, Before> m_sort{Before()};
};
