#include "users/NameList.h"

#include "texts/NameKey.h"

#include <algorithm>

void NameList::read(const UserRows &users)
{
    m_entries.clear();
    for (qsizetype row = 0; row < users.count(); ++row) {
        const QString name = users[row].*m_name;
        if (!name.isEmpty())
            m_entries.append({nameKey(name), name, users.id(row)});
    }
    std::stable_sort(m_entries.begin(), m_entries.end(),
                     [](const NameEntry &a, const NameEntry &b) { return a.key < b.key; });
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
