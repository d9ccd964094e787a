#include "users/UserLines.h"

#include "codes/UserColumns.h"
#include "texts/Texts.h"

#include <QLocale>

namespace {

constexpr auto guard = QLatin1Char('\'');

/// Whether a text begins a formula, or would without the apostrophes before it: those are guarded as well, so that of
/// each text it can be told what it was.
bool beginsFormula(const QString &text)
{
    qsizetype first = 0;
    while (first < text.size() && text[first] == guard)
        ++first;
    return first < text.size() && QStringView(u"=+-@\t\r\n").contains(text[first]);
}

} // namespace

char fieldSeparator(const QLocale &locale)
{
    return locale.decimalPoint() == QLatin1String(",") ? ';' : ',';
}

void writeHeader(CsvWriter &lines, const Texts &texts)
{
    for (const UserColumn &column : userColumns)
        lines.field(texts[column.caption]);
    lines.endLine();
}

void writeUser(CsvWriter &lines, const User &user)
{
    for (const UserColumn &column : userColumns)
        lines.field(guarded(column.value.text(user)));
    lines.endLine();
}

QString guarded(const QString &text)
{
    return beginsFormula(text) ? guard + text : text;
}

QString unguarded(const QString &text)
{
    return text.startsWith(guard) && beginsFormula(text) ? text.sliced(1) : text;
}
