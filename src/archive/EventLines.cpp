#include "archive/EventLines.h"

#include "startup/PlainText.h"
#include "texts/DateTimeText.h"

#include <array>

namespace tool {

namespace {

constexpr std::array eventNames = {
    "date", "time", "type", "code", "surname", "name", "channel", "channel_disabled", "interface_disabled"};
constexpr std::array eventWidths = {10, 8, 4, 9, 15, 15, 2, 6, 7};

bool isMarked(QByteArrayView field)
{
    return field == "X";
}

QByteArray jsonMark(QByteArrayView field)
{
    return isMarked(field) ? "true" : field.isEmpty() ? "false" : jsonText(field);
}

} // namespace

QByteArray jsonText(QByteArrayView utf8)
{
    QByteArray text = "\"";
    for (const char byte : utf8) {
        if (byte == '"' || byte == '\\')
            (text += '\\') += byte;
        else if (static_cast<unsigned char>(byte) < 0x20)
            text += "\\u" + QByteArray::number(byte, 16).rightJustified(4, '0');
        else
            text += byte;
    }
    return text += '"';
}

QByteArray offsetOf(const QDateTime &local)
{
    const int minutes = local.offsetFromUtc() / 60;
    const auto twoDigits = [](int number) { return QByteArray::number(number).rightJustified(2, '0'); };
    return (minutes < 0 ? "-" : "+") + twoDigits(qAbs(minutes) / 60) + ':' + twoDigits(qAbs(minutes) % 60);
}

QByteArray tableLine(const QStringList &cells, std::span<const int> widths, int width)
{
    QString line;
    for (qsizetype i = 0; i < cells.size(); ++i)
        line += printable(cells[i]).leftJustified(widths[static_cast<size_t>(i)]) + QStringLiteral("  ");
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    if (width > 0 && line.size() > width)
        line = line.left(width - 1) + QChar(u'\u2026');
    return line.toUtf8() + '\n';
}

/// UTF-8, in the order of the names.
struct EventLines::Fields {
    QByteArrayView date, time, type, code, surname, name;
    QByteArrayView channel, channelDisabled, interfaceDisabled;
};

EventLines::EventLines(const LineForm &form, const Texts &texts, const UserDirectory &users)
    : m_form(form), m_texts(texts), m_names(users), m_csv(form.separator)
{
    addHead();
    m_keptSize = size();
}

void EventLines::addHead()
{
    if (m_form.format == Format::Csv) {
        if (m_form.hasCursors)
            m_csv.field(QByteArrayView("cursor"));
        for (const char *name : eventNames)
            m_csv.field(QByteArrayView(name));
        m_csv.endLine();
    } else if (m_form.format == Format::Table) {
        QStringList captions;
        for (const Text caption : {Text::Data, Text::Ora, Text::Tipo, Text::Codice, Text::CognomeUtente,
                                   Text::NomeUtente, Text::Ch, Text::ChDis, Text::KorDis})
            captions.append(m_texts[caption]);
        m_bytes += tableLine(captions, eventWidths, m_form.width);
    }
}

Result<void> EventLines::add(const Statement &row, const SearchResults::Columns &columns)
{
    const QByteArrayView code = row.utf8(columns.Codice);
    const QByteArrayView type = row.utf8(columns.Tipo);
    const KnownNames::Names &names = m_names.of(code, type);
    const Fields fields{dateText(row.utf8(columns.Data)),
                        row.utf8(columns.Ora),
                        type,
                        code,
                        names.surname,
                        names.name,
                        row.utf8(columns.Canale),
                        row.utf8(columns.AbCh),
                        row.utf8(columns.KorDis)};
    if (m_form.format == Format::Csv)
        addCsv(fields);
    else if (m_form.format == Format::Json)
        addJson(fields);
    else
        addTable(fields);
    ++m_added;
    return {};
}

void EventLines::addCsv(const Fields &fields)
{
    if (m_form.hasCursors)
        m_csv.field(QByteArrayView(m_cursor));
    for (const QByteArrayView field : {fields.date, fields.time, fields.type, fields.code, fields.surname, fields.name,
                                       fields.channel, fields.channelDisabled, fields.interfaceDisabled})
        m_csv.field(field);
    m_csv.endLine();
}

void EventLines::addJson(const Fields &fields)
{
    m_bytes += '{';
    if (m_form.hasCursors)
        m_bytes += "\"cursor\":" + jsonText(m_cursor) + ',';
    const QByteArray moment = fields.date.toByteArray() + 'T' + fields.time.toByteArray() + offsetText(fields.time);
    m_bytes += "\"time\":" + jsonText(moment) + ",\"type\":" + jsonText(fields.type) +
               ",\"code\":" + jsonText(fields.code) + ",\"surname\":" + jsonText(fields.surname) +
               ",\"name\":" + jsonText(fields.name) + ",\"channel\":" + jsonText(fields.channel) +
               ",\"channel_disabled\":" + jsonMark(fields.channelDisabled) +
               ",\"interface_disabled\":" + jsonMark(fields.interfaceDisabled) + "}\n";
}

void EventLines::addTable(const Fields &fields)
{
    QStringList cells;
    for (const QByteArrayView field : {fields.date, fields.time, fields.type, fields.code, fields.surname, fields.name,
                                       fields.channel, fields.channelDisabled, fields.interfaceDisabled})
        cells.append(QString::fromUtf8(field));
    m_bytes += tableLine(cells, eventWidths, m_form.width);
}

/// Most events have the date of the one before them.
QByteArrayView EventLines::dateText(QByteArrayView date)
{
    if (date == m_stored && !m_date.isEmpty())
        return m_date;
    m_stored = date.toByteArray();
    m_date = m_stored;
    m_offset.clear();
    const QDate day = dayOfFile(QString::fromUtf8(date));
    if (!day.isValid())
        return m_date;
    m_date = day.toString(Qt::ISODate).toLatin1();
    const QByteArray first = offsetOf(day.startOfDay());
    if (first == offsetOf(day.addDays(1).startOfDay()))
        m_offset = first;
    return m_date;
}

/// Where an hour comes twice archives do not tell which one it is: the first one counts.
QByteArray EventLines::offsetText(QByteArrayView time) const
{
    if (!m_offset.isEmpty())
        return m_offset;
    const QDate day = dayOfFile(QString::fromUtf8(m_stored));
    const QTime at = timeOf(QString::fromUtf8(time));
    return day.isValid() && at.isValid() ? offsetOf(QDateTime(day, at)) : QByteArray();
}

void EventLines::keep()
{
    m_keptSize = size();
    m_kept = m_added;
}

void EventLines::takeBack()
{
    if (m_form.format == Format::Csv)
        m_csv.cut(m_keptSize);
    else
        m_bytes.truncate(m_keptSize);
    m_added = m_kept;
}

QByteArray EventLines::take()
{
    // What is not kept yet stays behind.
    const qsizetype size = std::exchange(m_keptSize, 0);
    if (m_form.format == Format::Csv)
        return m_csv.take(size);
    const QByteArray rest = m_bytes.sliced(size);
    m_bytes.truncate(size);
    return std::exchange(m_bytes, rest);
}

} // namespace tool
