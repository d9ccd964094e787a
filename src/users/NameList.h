#pragma once

#include "archives/RecordSet.h"

/// Those users of the register who have a surname (or a first name), sorted by it as nameKey() says. It follows single
/// changes, since sorting all anew would be felt at the keyboard.
class NameList
{
public:
    struct Entry {
        QString key;
        QString text;
        qint64 id = 0; ///< of the user's row
    };

    /// @param field  that holds the name
    explicit NameList(QString field) : m_field(std::move(field)) {}

    const QString &field() const { return m_field; }
    const QList<Entry> &entries() const { return m_entries; }

    void read(RecordSet users);
    /// @param before, after  the name of one user; "" has no entry
    void change(qint64 id, const QString &before, const QString &after);

private:
    const QString m_field;
    QList<Entry> m_entries;
};
