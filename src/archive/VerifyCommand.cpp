#include "archive/VerifyCommand.h"

#include "archive/RowForms.h"
#include "archives/Tables.h"
#include "platform/ArchiveUse.h"
#include "platform/FreshFile.h"
#include "startup/PlainText.h"
#include "texts/DateTimeText.h"
#include "texts/OwnText.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace tool {

namespace {

constexpr qint64 passingSeconds = 3'600;
constexpr qint64 workingSeconds = 86'400;
constexpr int mostTries = 3;

/// Name of the archive that a file stands beside; "" for one that stands for itself.
QString besideWhat(const QString &name)
{
    for (const QLatin1String ending : JournalEndings) {
        if (name.endsWith(ending))
            return name.chopped(ending.size());
    }
    return {};
}

/// The templates hold nothing that anybody may not know.
bool isTemplate(const QString &name)
{
    return name.endsWith(QStringLiteral("org.zeb"), Qt::CaseInsensitive) ||
           name.endsWith(QStringLiteral("Eventitmp.zeb"), Qt::CaseInsensitive);
}

/// The day of an archive of events; not valid for any other.
QDate dayOf(const QString &name)
{
    const QString file = QFileInfo(name).fileName();
    const QString beginning = QStringLiteral("eventi_");
    return file.startsWith(beginning, Qt::CaseInsensitive) ? dayOfFile(file.mid(beginning.size()).chopped(4)) : QDate();
}

OwnText textOf(RowFault::Kind kind)
{
    switch (kind) {
    case RowFault::Kind::Form:
        return OwnText::VerifyRowForm;
    case RowFault::Kind::Date:
        return OwnText::VerifyRowDate;
    case RowFault::Kind::Order:
        break;
    }
    return OwnText::VerifyRowOrder;
}

} // namespace

VerifyCommand::VerifyCommand(const Site &site, bool isQuick, Output &output)
    : m_site(site), m_isQuick(isQuick), m_pending(output)
{
    for (const auto *folder : {ArchiveName::Folder, ArchiveName::BackupFolder})
        list(QStringView(folder).toString());
}

void VerifyCommand::list(const QString &folder)
{
    if (!m_site.archives.folder().isFolder(folder))
        return;
    checkRights(folder);
    const QDir listed(m_site.archives.folder().path(folder));
    const QStringList names = listed.entryList(QDir::Files | QDir::System | QDir::Hidden, QDir::Name);
    for (const QString &name : names)
        m_names.append(folder + QLatin1Char('/') + name);
}

Result<bool> VerifyCommand::step(const QDeadlineTimer &until)
{
    Result<bool> written = m_pending.write(until);
    if (!written || !written.value())
        return written;
    if (!m_names.isEmpty()) {
        checkFile(m_names.constFirst());
        m_names.removeFirst();
        return false;
    }
    if (!std::exchange(m_isTold, true))
        m_site.tell({OwnText::VerifyDone, {QString::number(m_checked), QString::number(m_faults)}, {}});
    return m_pending.end();
}

void VerifyCommand::found(const Message &fault)
{
    ++m_faults;
    m_pending.add(printable(m_site.texts.sentence(fault)).toUtf8() + '\n');
}

bool VerifyCommand::isOld(const QString &name, qint64 seconds) const
{
    const QDateTime modified = QFileInfo(m_site.archives.folder().path(name)).lastModified();
    return modified.secsTo(m_site.clock.now()) > seconds;
}

/// Whether no program has the archive open that a file stands beside, or is.
bool VerifyCommand::isAlone(const QString &name) const
{
    return !m_site.archives.exists(name) || !isInUse(m_site.archives.folder().path(name));
}

void VerifyCommand::checkFile(const QString &name)
{
    const QString file = QFileInfo(name).fileName();
    const QString archive = besideWhat(name);
    const bool isWorking = file.endsWith(QStringLiteral(".$$$"));
    const bool isPassing = file.endsWith(QStringLiteral(".part")) || FreshFile::isBeside(file);
    if (!archive.isEmpty()) {
        checkSideFile(name, archive);
    } else if ((isPassing && isOld(name, passingSeconds)) ||
               (isWorking && isOld(name, workingSeconds) && isAlone(name))) {
        found({OwnText::VerifySideFile, {name}, {}});
    } else if (file.contains(QStringLiteral(".guasto"))) {
        found({OwnText::VerifySetAside, {name}, {}});
    } else if (file.endsWith(QStringLiteral(".zeb"), Qt::CaseInsensitive) ||
               file.endsWith(QStringLiteral(".evn"), Qt::CaseInsensitive)) {
        checkRights(name);
        checkArchive(name);
    }
}

void VerifyCommand::checkSideFile(const QString &name, const QString &archive)
{
    if (!isAlone(archive) || archive.contains(QStringLiteral(".guasto")) || archive.endsWith(QStringLiteral(".$$$")))
        return;
    // What a program that was killed has left of a write-ahead journal is read with its archive, and goes when that is
    // opened again. Pages that a rollback journal would bring back cannot be checked without writing.
    if (!m_site.archives.exists(archive) || name.endsWith(QStringLiteral("-journal")))
        found({OwnText::VerifySideFile, {name}, {}});
    else if (name.endsWith(QStringLiteral("-wal")) && QFileInfo(m_site.archives.folder().path(name)).size() > 0)
        m_site.tell({OwnText::VerifyLeftover, {name}, {}});
}

void VerifyCommand::checkRights(const QString &name)
{
    const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    if (!isTemplate(name) && (QFileInfo(m_site.archives.folder().path(name)).permissions() & others))
        found({OwnText::VerifyRights, {name}, {}});
}

void VerifyCommand::checkArchive(const QString &name)
{
    ++m_checked;
    // What is changed while it is read without a lock is read again.
    for (int i = 0; i < mostTries && !checkContent(name); ++i) {
    }
}

/// @return false when it was changed meanwhile
bool VerifyCommand::checkContent(const QString &name)
{
    Result<Database> database = m_site.archives.open(name, Database::Use::Untouched);
    // One that has gone meanwhile was replaced, or is nobody's any more.
    if (!database && database.fault().code == FaultCode::NotFound)
        return true;
    Result<void> read = database ? m_isQuick ? database.value().readEnds() : database.value().readThrough()
                                 : Result<void>(database.fault());
    QList<RowFault> faults;
    if (read && !m_isQuick) {
        const Result<QList<RowFault>> rows = faultsOfRows(database.value(), dayOf(name));
        read = rows ? Result<void>() : rows.fault();
        faults = rows ? rows.value() : QList<RowFault>();
    }
    if (database && database.value().hasChanged())
        return false;
    if (!read)
        found({OwnText::ToolOfFile, {name}, read.fault()});
    for (const RowFault &fault : std::as_const(faults))
        found({textOf(fault.kind), {name, QString::number(fault.number)}, {}});
    return true;
}

} // namespace tool
