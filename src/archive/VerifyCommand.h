#pragma once

#include "archive/Command.h"
#include "archive/Output.h"

namespace tool {

/// Looks for damage and disorder in the archives, one file in each step, and writes a line for each fault.
///
/// An archive that the supervisor has open is read as it stands. Whatever the supervisor may be writing at the moment
/// is no fault: a file that passes is told only when it has lain there for an hour, a working copy after a day. What a
/// killed program has left of a journal that the archive is read with is a word, and no fault.
class VerifyCommand : public Command
{
public:
    /// All must outlive this object. @param isQuick  first and last pages only
    VerifyCommand(const Site &site, bool isQuick, Output &output);

    Result<bool> step(const QDeadlineTimer &until) override;
    bool hasFaults() const override { return m_faults > 0; }
    QString state() const override { return m_names.value(0); }

private:
    void list(const QString &folder);
    void checkFile(const QString &name);
    void checkSideFile(const QString &name, const QString &archive);
    void checkArchive(const QString &name);
    bool checkContent(const QString &name);
    void checkRights(const QString &name);
    bool isAlone(const QString &name) const;
    bool isOld(const QString &name, qint64 seconds) const;
    void found(const Message &fault);

    const Site m_site;
    const bool m_isQuick;
    Pending m_pending;
    QStringList m_names; ///< below the program folder, still to be looked at
    qsizetype m_checked = 0;
    qsizetype m_faults = 0;
    bool m_isTold = false;
};

} // namespace tool
