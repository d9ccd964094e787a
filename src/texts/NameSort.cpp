#include "texts/NameSort.h"

#include "texts/NameKey.h"

NameSort::NameSort(std::function<qsizetype()> count, std::function<Person(qsizetype)> person)
    : m_count(std::move(count)), m_person(std::move(person))
{
}

Result<bool> NameSort::step(const QDeadlineTimer &until)
{
    const qsizetype count = m_count();
    while (m_next < count) {
        Person person = m_person(m_next++);
        if (!person.name.isEmpty())
            m_sort.add({{nameKey(person.name), person.name, person.id}, person.code});
        if (until.hasExpired())
            return false;
    }
    return m_sort.step(until);
}

QList<NameEntry> NameSort::take()
{
    QList<NameEntry> entries;
    entries.reserve(static_cast<qsizetype>(m_sort.count()));
    for (Item &item : m_sort.take())
        entries.append(std::move(item.entry));
    return entries;
}
