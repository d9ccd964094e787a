// Makes the archive templates of a program folder; run by the build.

#include "archives/Templates.h"

#include <QDir>

#include <cstdio>

int main(int argumentCount, char *arguments[])
{
    if (argumentCount != 2) {
        std::fputs("usage: kor-make-templates <folder Archivi>\n", stderr);
        return 2;
    }
    Disk disk;
    ProgramFolder folder(QDir(QString::fromLocal8Bit(arguments[1])).absoluteFilePath(QStringLiteral("..")), disk);
    ArchiveStore archives(folder);
    if (const Result<void> made = makeTemplates(archives); !made) {
        std::fprintf(stderr, "kor-make-templates: cannot make %s\n", qPrintable(made.fault().subject));
        return 1;
    }
    return 0;
}
