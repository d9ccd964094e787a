#include "users/CodeRun.h"

#include "codes/CodeRules.h"

namespace {

constexpr qsizetype pieceRows = 512;

} // namespace

CodeRun::CodeRun(Database &database, UserRows users, Protocol protocol, int first, int count)
    : m_database(database),
      m_users(std::move(users)),
      m_protocol(protocol),
      m_first(first),
      m_count(count),
      m_transaction(database)
{
    m_taken.reserve(m_users.count());
}

/// Looks which codes are taken. @return true when all are known
bool CodeRun::look(const QDeadlineTimer &until)
{
    while (m_looked < m_users.count()) {
        const qsizetype end = qMin(m_looked + pieceRows, m_users.count());
        for (; m_looked < end; ++m_looked)
            m_taken.insert(m_users.text(m_looked, &User::Codice));
        if (m_looked < m_users.count() && until.hasExpired())
            return false;
    }
    return true;
}

Result<bool> CodeRun::step(const QDeadlineTimer &until)
{
    if (!look(until))
        return false;
    while (m_done < m_count) {
        const QString code = QString::number(m_first + m_done);
        if (m_taken.contains(code)) {
            m_isIncomplete = true;
        } else if (const Result<void> added = add(code); !added) {
            m_transaction.takeBack();
            return added.fault();
        }
        if (++m_done < m_count && until.hasExpired())
            return false;
    }
    if (std::exchange(m_insert, std::nullopt)) {
        if (const Result<void> stands = m_transaction.commit(); !stands)
            return stands.fault();
    }
    return true;
}

Result<void> CodeRun::add(const QString &code)
{
    if (!m_insert) {
        if (Result<void> begun = m_transaction.begin(); !begun)
            return begun;
        Result<Statement> prepared =
            m_database.prepare(QStringLiteral("INSERT INTO Utenti (Codice, Tipo, CodTronc) VALUES (?, ?, ?)"));
        if (!prepared)
            return prepared.fault();
        m_insert = std::move(prepared.value());
        m_insert->bind(2, typeText(CodeType::Transmitter));
    }
    const QString truncated = truncatedCode(code, m_protocol);
    m_insert->bind(1, code);
    m_insert->bind(3, truncated);
    const Result<bool> stepped = m_insert->step();
    m_insert->reset();
    if (!stepped)
        return stepped.fault();
    m_added.append({m_database.lastRow(), code, truncated});
    return {};
}
