#include "users/CodeRun.h"

#include "codes/CodeRules.h"

CodeRun::CodeRun(Database &database, const UserRows &users, Protocol protocol, int first, int count)
    : m_database(database), m_protocol(protocol), m_first(first), m_count(count), m_transaction(database)
{
    m_taken.reserve(users.count());
    for (qsizetype row = 0; row < users.count(); ++row)
        m_taken.insert(users[row].Codice);
}

Result<bool> CodeRun::step(const QDeadlineTimer &until)
{
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
    m_insert->bind(1, code);
    m_insert->bind(3, truncatedCode(code, m_protocol));
    const Result<bool> stepped = m_insert->step();
    m_insert->reset();
    if (!stepped)
        return stepped.fault();
    if (m_firstAdded.isEmpty())
        m_firstAdded = code;
    return {};
}
