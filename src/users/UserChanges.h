#pragma once

#include <QSet>
#include <QString>

/// What an operator has done to the users of a register, by their rows: a user who is added and deleted again counts
/// as neither, one who is changed twice counts once.
class UserChanges
{
public:
    void add(qint64 id) { m_added.insert(id); }
    void change(qint64 id)
    {
        if (!m_added.contains(id))
            m_changed.insert(id);
    }
    void remove(qint64 id)
    {
        m_changed.remove(id);
        // The row of one that is deleted may be given to the next one that is added.
        if (!m_added.remove(id))
            ++m_deleted;
    }

    /// Brings in what was done after this.
    void follow(const UserChanges &later)
    {
        for (const qint64 id : later.m_changed)
            change(id);
        m_added += later.m_added;
    }

    /// "added,changed,deleted"
    QString text() const { return QStringLiteral("%1,%2,%3").arg(m_added.size()).arg(m_changed.size()).arg(m_deleted); }

private:
    QSet<qint64> m_added;
    QSet<qint64> m_changed;
    qsizetype m_deleted = 0;
};
