#pragma once

#include "codes/User.h"
#include "platform/ProgramFolder.h"
#include "platform/SortInTurns.h"
#include "platform/Task.h"

#include <optional>

/// Lists the users who share a truncated code with another one in RepDoppioni.txt, group after group. Without any the
/// file is removed.
class DuplicateReport : public Task
{
public:
    /// @param folder  that gets the file; must outlive this object
    /// @param realCode, truncatedCode  words over the two columns
    DuplicateReport(QList<User> users, ProgramFolder &folder, const QString &realCode, const QString &truncatedCode);

    /// Goes on with at least one user. @return true when the file is written, or removed
    Result<bool> step(const QDeadlineTimer &until) override;
    /// Of the users that have a truncated code.
    Progress progress() const override { return {m_next, count()}; }

    bool isFound() const { return m_isFound; }
    /// The report as it is shown and printed: lines that end with LF, and hyphens for the rule, whose characters have
    /// no shape of their own.
    const QString &text() const { return m_text; }
    static QString fileName() { return QStringLiteral("RepDoppioni.txt"); }

private:
    /// By truncated codes, and by codes among those that share one.
    struct Before {
        const QList<User> &users;
        bool operator()(qsizetype a, qsizetype b) const;
    };

    qsizetype count() const { return static_cast<qsizetype>(m_sort ? m_sort->count() : m_rows.size()); }
    void look(const User &user);
    void write(const QString &line);
    void writeLine(const QString &code, const QString &truncated);
    Result<void> finish();

    const QList<User> m_users;
    ProgramFolder &m_folder;
    std::optional<SortInTurns<qsizetype, Before>> m_sort; ///< until all are in their order
    std::vector<qsizetype> m_rows; ///< of the users with a truncated code, in the order of the report
    qsizetype m_next = 0;
    bool m_isFound = false;
    QString m_before; ///< code and truncated code of the user looked at last
    QString m_truncatedBefore;
    QString m_written; ///< code written last
    QByteArray m_content;
    QString m_text;
};
