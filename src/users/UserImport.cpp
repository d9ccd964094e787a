#include "users/UserImport.h"

UserImport::UserImport(Database &database, FreedInTurns<QList<ImportLine>> lines, Protocol protocol)
    : m_database(database), m_lines(std::move(lines)), m_protocol(protocol), m_transaction(database)
{
}

Result<bool> UserImport::step(const QDeadlineTimer &until)
{
    if (!m_insert) {
        if (const Result<void> begun = begin(); !begun)
            return begun.fault();
    }
    while (m_done < m_lines.size()) {
        if (const Result<void> taken = take(m_lines[m_done]); !taken) {
            m_transaction.takeBack();
            return taken.fault();
        }
        if (++m_done < m_lines.size() && until.hasExpired())
            return false;
    }
    return true;
}

Result<void> UserImport::begin()
{
    if (Result<void> begun = m_transaction.begin(true); !begun)
        return begun;
    Result<Statement> insert = m_database.prepare(QStringLiteral(
        "INSERT INTO Utenti (Codice, Tipo, Cognome, Nome, Note, CodTronc) VALUES (?1, ?2, ?3, ?4, ?5, ?6)"));
    if (!insert)
        return insert.fault();
    Result<Statement> update =
        m_database.prepare(QStringLiteral("UPDATE Utenti SET Cognome = ?1, Nome = ?2, Note = ?3 WHERE rowid = ?4"));
    if (!update)
        return update.fault();
    m_insert = std::move(insert.value());
    m_update = std::move(update.value());
    return {};
}

Result<void> UserImport::take(const ImportLine &line)
{
    if (line.outcome != ImportOutcome::New && line.outcome != ImportOutcome::Changed)
        return {};
    const bool isNew = line.outcome == ImportOutcome::New;
    Statement &statement = isNew ? *m_insert : *m_update;
    const QString &code = line.field(ImportField::Code);
    const QString &surname = line.field(ImportField::Surname), &firstName = line.field(ImportField::FirstName),
                  &notes = line.field(ImportField::Notes);
    SqlValues values;
    if (isNew)
        values = {code, line.field(ImportField::Type), surname, firstName, notes, truncatedCode(code, m_protocol)};
    else
        values = {surname, firstName, notes, line.row};
    statement.bind(values);
    const Result<bool> stepped = statement.step();
    statement.reset();
    if (!stepped)
        return stepped.fault();
    if (isNew)
        m_changes.add(m_database.lastRow());
    else
        m_changes.change(line.row);
    return {};
}
