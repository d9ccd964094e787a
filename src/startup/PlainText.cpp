#include "startup/PlainText.h"

#include <algorithm>

QString TogliZeri(const QString &text)
{
    const auto first = std::find_if(text.cbegin(), text.cend(), [](QChar c) { return c != QLatin1Char('0'); });
    return text.sliced(first - text.cbegin());
}

QString SoloCifre(const QString &text)
{
    QString digits;
    std::copy_if(text.cbegin(), text.cend(), std::back_inserter(digits),
                 [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); });
    return digits;
}

QString TogliAnd(const QString &text)
{
    return QString(text).remove(QLatin1Char('&'));
}

QString titleOf(const QString &caption)
{
    return TogliAnd(caption).remove(QChar(0x2026));
}

QString Centra(const QString &text, int width)
{
    const qsizetype before = qMax<qsizetype>(0, (width - text.size()) / 2);
    return (QString(before, QLatin1Char(' ')) + text).leftJustified(width);
}

QString printable(QString text)
{
    text.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    for (QChar &character : text) {
        const QChar::Category category = character.category();
        if (category == QChar::Other_Control || category == QChar::Other_Format || category == QChar::Separator_Line ||
            category == QChar::Separator_Paragraph)
            character = QLatin1Char('?');
    }
    return text;
}
