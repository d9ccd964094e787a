#include "prefs/ManualFile.h"

#include "texts/LanguageName.h"

#include <QFileInfo>

QString manualFile(const ProgramFolder &folder, const QString &name, int language)
{
    const QString start = QStringLiteral("Istruzioni/") + name, end = QStringLiteral(".pdf");
    const QString translated = folder.fileToOpen(start + QLatin1Char('_') + languageCode(language) + end);
    return QFileInfo(translated).isFile() ? translated : folder.fileToOpen(start + end);
}
