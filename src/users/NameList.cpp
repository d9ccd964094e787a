#include "users/NameList.h"

#include "texts/NameKey.h"

#include <algorithm>

NameSort NameList::sort(const UserRows &users) const
{
    return NameSort([users] { return users.count(); },
                    [users, name = m_name](qsizetype row) {
                        return NameSort::Person{users.text(row, name), {}, users.id(row)};
                    });
}

void NameList::change(qint64 id, const QString &before, const QString &after)
{
    if (!before.isEmpty()) {
        const auto found =
            std::find_if(m_entries.cbegin(), m_entries.cend(), [id](const NameEntry &entry) { return entry.id == id; });
        if (found != m_entries.cend())
            m_entries.erase(found);
    }
    if (after.isEmpty())
        return;
    const QString key = nameKey(after);
    const auto place = std::upper_bound(m_entries.cbegin(), m_entries.cend(), key,
                                        [](const QString &k, const NameEntry &entry) { return k < entry.key; });
    m_entries.insert(place, {key, after, id});
}
