#include "archives/DayFiles.h"

#include "archives/Tables.h"
#include "texts/DateTimeText.h"

#include <QDir>
#include <QRegularExpression>

#include <algorithm>

Result<QHash<QDate, DayFiles>> filesOfDays(const ProgramFolder &folder)
{
    // As ArchiveStore::setAside() names them; what stands beside an archive while it is open is no file of its own.
    static const QRegularExpression pattern(QStringLiteral("^eventi_(\\d\\d-\\d\\d-\\d{4})\\.zeb(\\.guasto\\d*)?\\z"),
                                            QRegularExpression::CaseInsensitiveOption);
    const QString archives = QStringView(ArchiveName::Folder).toString();
    const QDir listed(folder.path(archives));
    if (!listed.isReadable())
        return Fault{listed.exists() ? FaultCode::AccessDenied : FaultCode::NotFound, archives};
    QHash<QDate, DayFiles> days;
    for (const QString &name : listed.entryList(QDir::AllEntries | QDir::System | QDir::Hidden, QDir::NoSort)) {
        const QRegularExpressionMatch match = pattern.match(name);
        const QDate day = dayOfFile(match.capturedView(1));
        if (!day.isValid())
            continue;
        DayFiles &files = days[day];
        if (match.capturedLength(2) > 0)
            files.setAside.append(archives + QLatin1Char('/') + name);
        else
            files.archive = ArchiveName::events(day);
    }
    // The first has no number, and the tenth follows the ninth.
    for (DayFiles &files : days) {
        std::sort(files.setAside.begin(), files.setAside.end(), [](const QString &a, const QString &b) {
            return a.size() != b.size() ? a.size() < b.size() : a < b;
        });
    }
    return days;
}

Result<DayFiles> filesOfDay(const ProgramFolder &folder, QDate day)
{
    const Result<QHash<QDate, DayFiles>> files = filesOfDays(folder);
    return files ? Result<DayFiles>(files.value().value(day)) : files.fault();
}
