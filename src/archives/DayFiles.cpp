#include "archives/DayFiles.h"

#include "archives/Tables.h"

#include <QDir>
#include <QRegularExpression>

#include <algorithm>

QHash<QString, DayFiles> filesOfDays(const ProgramFolder &folder)
{
    // As ArchiveStore::setAside() names them; what stands beside an archive while it is open is no file of its own.
    static const QRegularExpression pattern(QStringLiteral("^eventi_(\\d\\d-\\d\\d-\\d{4})\\.zeb(\\.guasto\\d*)?\\z"),
                                            QRegularExpression::CaseInsensitiveOption);
    const QString archives = QStringView(ArchiveName::Folder).toString();
    const QDir listed(folder.path(archives));
    QHash<QString, DayFiles> days;
    for (const QString &name : listed.entryList(QDir::AllEntries | QDir::System | QDir::Hidden, QDir::NoSort)) {
        const QRegularExpressionMatch match = pattern.match(name);
        if (!match.hasMatch())
            continue;
        DayFiles &files = days[match.captured(1)];
        if (match.capturedLength(2) > 0)
            files.setAside.append(archives + QLatin1Char('/') + name);
        else
            files.archive = ArchiveName::events(match.captured(1));
    }
    // The first has no number, and the tenth follows the ninth.
    for (DayFiles &files : days) {
        std::sort(files.setAside.begin(), files.setAside.end(), [](const QString &a, const QString &b) {
            return a.size() != b.size() ? a.size() < b.size() : a < b;
        });
    }
    return days;
}
