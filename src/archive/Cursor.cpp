#include "archive/Cursor.h"

#include <QStringList>

namespace tool {

namespace {

const QString &dayForm()
{
    static const QString form = QStringLiteral("yyyyMMdd");
    return form;
}

} // namespace

QByteArray cursorText(const Cursor &cursor)
{
    QByteArray text;
    for (auto day = cursor.cbegin(); day != cursor.cend(); ++day) {
        if (!text.isEmpty())
            text += '~';
        text += day.key().toString(dayForm()).toLatin1() + '.' + QByteArray::number(day->file) + '.' +
                QByteArray::number(day->number) + '.' + QByteArray::number(day->mark, 16);
    }
    return text;
}

std::optional<Cursor> cursorOf(const QString &text)
{
    Cursor cursor;
    for (const QString &part : text.split(QLatin1Char('~'))) {
        const QStringList fields = part.split(QLatin1Char('.'));
        if (fields.size() != 4)
            return {};
        std::array<bool, 3> areNumbers{};
        const QDate day = QDate::fromString(fields[0], dayForm());
        const Place place{fields[1].toInt(&areNumbers[0]), fields[2].toLongLong(&areNumbers[1]),
                          fields[3].toUInt(&areNumbers[2], 16)};
        if (!day.isValid() || areNumbers != std::array{true, true, true} || place.file < 0 || place.number < 0)
            return {};
        cursor.insert(day, place);
    }
    return cursor;
}

} // namespace tool
