// Makes the manuals of a program folder from their sources and the pictures of the windows; run by the build.

#include "PdfContents.h"

#include <QGuiApplication>
#include <QSaveFile>

#include <array>
#include <cstdio>

namespace {

struct Manual {
    const char *source;        ///< in the project
    const char *target;        ///< in the folder Istruzioni
    const char *language = ""; ///< none for one in several languages
};

// The software manual in Italian has the name by which a program folder's own is found.
constexpr std::array manuals = {
    Manual{"assets/manuals/man731.md", "man731.pdf"},
    Manual{"assets/manuals/man752.md", "man752.pdf"},
    Manual{"assets/manuals/mansw_it.md", "mansw.pdf", "it"},
    Manual{"docs/manual.md", "mansw_en.pdf", "en"},
    Manual{"assets/manuals/mansw_fr.md", "mansw_fr.pdf", "fr"},
    Manual{"assets/manuals/mansw_de.md", "mansw_de.pdf", "de"},
};

int fail(const char *what, const QString &path, const QString &why)
{
    std::fprintf(stderr, "kor-make-manuals: cannot %s %s: %s\n", what, qPrintable(QDir::toNativeSeparators(path)),
                 qPrintable(why));
    return 1;
}

int make(const Manual &manual, const QDir &sources, const QDir &pictures, const QDir &targets)
{
    QFile source(sources.filePath(QLatin1String(manual.source)));
    if (!source.open(QIODevice::ReadOnly))
        return fail("read", source.fileName(), source.errorString());
    const QString markdown = QString::fromUtf8(source.readAll());
    if (markdown.trimmed().isEmpty())
        return fail("read", source.fileName(), QStringLiteral("nothing stands in it"));
    QByteArray bytes;
    try {
        const PrintedManual printed = printManual(markdown, QDir(pictures.filePath(QLatin1String(manual.language))));
        bytes = withContents(printed, manual.language);
    } catch (const std::exception &exception) {
        return fail("print", source.fileName(), QString::fromUtf8(exception.what()));
    }
    QSaveFile target(targets.filePath(QLatin1String(manual.target)));
    if (!target.open(QIODevice::WriteOnly) || target.write(bytes) != bytes.size() || !target.commit())
        return fail("write", target.fileName(), target.errorString());
    return 0;
}

} // namespace

int main(int argumentCount, char *arguments[])
{
    const QGuiApplication application(argumentCount, arguments);
    if (argumentCount != 4) {
        std::fputs("usage: kor-make-manuals <project> <pictures of windows> <target folder Istruzioni>\n", stderr);
        return 2;
    }
    const QDir sources(QString::fromLocal8Bit(arguments[1])), pictures(QString::fromLocal8Bit(arguments[2])),
        targets(QString::fromLocal8Bit(arguments[3]));
    for (const Manual &manual : manuals) {
        if (const int failed = make(manual, sources, pictures, targets))
            return failed;
    }
    return 0;
}
