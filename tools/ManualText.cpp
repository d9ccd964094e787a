#include "ManualText.h"

#include <QRegularExpression>

namespace {

const QRegularExpression &pictureLine()
{
    static const QRegularExpression line(QStringLiteral("<!-- picture: ([a-z-]+) -->"));
    return line;
}

QString contents(const QString &source)
{
    QString lines;
    static const QRegularExpression section(QStringLiteral("^## (.+)$"), QRegularExpression::MultilineOption);
    for (const QRegularExpressionMatch &match : section.globalMatch(source)) {
        const QString words = match.captured(1).remove(QLatin1Char('*'));
        lines += QStringLiteral("[%1](#%2)\n\n").arg(words, anchor(words));
    }
    return lines;
}

} // namespace

QString anchor(const QString &heading)
{
    QString name;
    for (const QChar c : heading.toLower()) {
        if (c.isLetterOrNumber() || c == QLatin1Char('-') || c == QLatin1Char('_'))
            name += c;
        else if (c.isSpace())
            name += QLatin1Char('-');
    }
    return name;
}

QString manualText(QString source)
{
    static const QRegularExpression linkOutside(QStringLiteral("\\[([^\\]]*)\\]\\((?!#)[^)]*\\)"));
    source.replace(linkOutside, QStringLiteral("\\1"));
    // A sign that stands apart, as in French, does not begin a line.
    static const QRegularExpression signApart(QStringLiteral(" ([:;!?])(?=\\s|$)"));
    source.replace(signApart, QString(QChar(QChar::Nbsp)) + QStringLiteral("\\1"));
    source.replace(QStringLiteral("<!-- contents -->"), contents(source));
    return source.replace(pictureLine(), QStringLiteral("![\\1](\\1)"));
}

QStringList picturesIn(const QString &source)
{
    QStringList names;
    for (const QRegularExpressionMatch &match : pictureLine().globalMatch(source))
        names.append(match.captured(1));
    return names;
}
