#pragma once

#include "archive/KnownNames.h"
#include "events/EventSink.h"
#include "platform/CsvWriter.h"
#include "texts/Texts.h"

#include <QDate>

namespace tool {

enum class Format {
    Table, ///< for eyes
    Csv,   ///< RFC 4180, with a line of names
    Json,  ///< one object a line
    Xls,
};

/// How lines are formed.
struct LineForm {
    Format format = Format::Table;
    char separator = ',';    ///< of Csv
    int width = 0;           ///< of Table, in characters; 0 = whatever it takes
    bool hasCursors = false; ///< each line has one: see EventLines::setCursor()
};

/// Forms a line of each event. What was formed and kept can be taken at any time.
///
/// What an archive holds in another form than it should stands in the line as it is there.
class EventLines : public EventSink
{
public:
    /// All must outlive this object.
    EventLines(const LineForm &form, const Texts &texts, const UserDirectory &users);

    Result<void> add(const Statement &row, const SearchResults::Columns &columns) override;
    void keep() override;
    void takeBack() override;

    /// Place behind the event that is added next.
    void setCursor(const QByteArray &cursor) { m_cursor = cursor; }
    /// The users have been read anew.
    void forgetNames() { m_names.clear(); }
    /// Lines kept since the last call.
    QByteArray take();
    qint64 count() const { return m_kept; } ///< events kept in all

private:
    struct Fields;

    void addHead();
    void addCsv(const Fields &fields);
    void addJson(const Fields &fields);
    void addTable(const Fields &fields);
    QByteArrayView dateText(QByteArrayView date);
    QByteArray offsetText(QByteArrayView time) const;
    qsizetype size() const { return m_form.format == Format::Csv ? m_csv.size() : m_bytes.size(); }

    const LineForm m_form;
    const Texts &m_texts;
    KnownNames m_names;
    CsvWriter m_csv;
    QByteArray m_bytes;
    qsizetype m_keptSize = 0;
    qint64 m_added = 0;
    qint64 m_kept = 0;
    QByteArray m_cursor;
    QByteArray m_stored; ///< date of the latest event, as it is stored
    QByteArray m_date;   ///< the same after ISO 8601
    QByteArray m_offset; ///< of its local time; empty when it changes on that day
};

/// The value of an object, between quotation marks.
QByteArray jsonText(QByteArrayView utf8);
/// "+01:00", of a local time.
QByteArray offsetOf(const QDateTime &local);
/// @p cells side by side, each in its width, cut at @p width characters unless that is 0.
QByteArray tableLine(const QStringList &cells, std::span<const int> widths, int width);

} // namespace tool
