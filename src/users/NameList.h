#pragma once

#include "platform/FreedInTurns.h"
#include "texts/NameSort.h"
#include "users/UserRows.h"

/// Those users of the register who have a surname (or a first name), sorted by it as nameKey() says. It follows single
/// changes, since sorting all anew would be felt at the keyboard.
class NameList
{
public:
    explicit NameList(QString User::*name) : m_name(name) {}

    QString User::*name() const { return m_name; }
    /// An id is that of the user's row.
    const QList<NameEntry> &entries() const { return m_entries; }

    /// Lists the names of @p users; what it has made is for set().
    NameSort sort(const UserRows &users) const;
    void set(QList<NameEntry> entries) { m_entries = std::move(entries); }
    /// @param before, after  the name of one user; "" has no entry
    void change(qint64 id, const QString &before, const QString &after);

private:
    QString User::*const m_name;
    FreedInTurns<QList<NameEntry>> m_entries;
};
