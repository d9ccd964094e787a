#include "platform/Workbook.h"

#include <QtEndian>

#include <array>

namespace {

constexpr qsizetype Slice = 65536;     ///< bytes written in one step
constexpr qsizetype CellSize = 14;     ///< of a record LABELSST
constexpr unsigned CaptionFormat = 16; ///< numbers of the cell formats below: fifteen of styles come first
constexpr unsigned TextFormat = 15;

enum RecordType : quint16 {
    Bof = 0x0809,
    Eof = 0x000a,
    CodePage = 0x0042,
    Window1 = 0x003d,
    Window2 = 0x023e,
    Font = 0x0031,
    CellFormat = 0x00e0,
    Style = 0x0293,
    BoundSheet = 0x0085,
    Dimensions = 0x0200,
    ColumnInfo = 0x007d,
    LabelSst = 0x00fd,
};

QByteArray beginning(unsigned kind)
{
    // Version of the format; number and year of the program that introduced it; oldest program that can read it.
    return BiffRecord(Bof).u16(0x0600).u16(kind).u16(3515).u16(1997).u32(0).u32(6).bytes();
}

QByteArray font(unsigned weight)
{
    // Ten points, no effects, colour of the system.
    return BiffRecord(Font)
        .u16(200)
        .u16(0)
        .u16(0x7fff)
        .u16(weight)
        .u16(0)
        .u8(0)
        .u8(0)
        .u8(0)
        .u8(0)
        .name(u"Arial")
        .bytes();
}

/// @param kind  0xfff5 for a style, 1 for a cell of the first style; @param used  which groups differ from the style
QByteArray format(unsigned fontNumber, unsigned number, unsigned kind, unsigned used)
{
    constexpr unsigned Bottom = 0x20;
    constexpr unsigned NoFill = 0x20c0;
    return BiffRecord(CellFormat)
        .u16(fontNumber)
        .u16(number)
        .u16(kind)
        .u8(Bottom)
        .u8(0)
        .u8(0)
        .u8(used)
        .u32(0)
        .u32(0)
        .u16(NoFill)
        .bytes();
}

/// Fonts and formats, in the order that readers expect: number 15 is the format of cells that say nothing else.
QByteArray formats()
{
    constexpr unsigned Text = 49; // so that a date or a code stays what it is when somebody edits its cell
    constexpr unsigned Plain = 0;
    // There is no font number 4: four plain ones stand before the bold one, which is number 5.
    constexpr unsigned Bold = 5;
    QByteArray records = font(400) + font(400) + font(400) + font(400) + font(700);
    for (int style = 0; style < 15; ++style)
        records += format(Plain, 0, 0xfff5, style == 0 ? 0 : 0xf4);
    records += format(Plain, Text, 1, 0x04) + format(Bold, Text, 1, 0x0c);
    return records + BiffRecord(Style).u16(0x8000).u8(0).u8(0xff).bytes();
}

} // namespace

Workbook::Workbook(const QString &sheetName, const QStringList &captions)
    : m_sheetName(sheetName), m_captions(captions), m_widths(captions.size(), 0)
{
    beginSheet();
}

void Workbook::beginSheet()
{
    m_sheets.emplace_back();
    for (const QString &caption : m_captions)
        put(caption);
}

void Workbook::put(const QString &text)
{
    Sheet &sheet = m_sheets.back();
    qsizetype &width = m_widths[sheet.cells.size() % m_captions.size()];
    width = qMax(width, text.size());
    sheet.cells.append(text.isEmpty() ? NoText : m_texts.add(text));
    if (!text.isEmpty())
        ++sheet.used;
}

Result<void> Workbook::addRow(const QStringList &fields)
{
    for (const QString &text : fields) {
        if (text.size() > SharedStrings::MostCharacters)
            return Fault{FaultCode::Damaged, text.left(20)};
    }
    if (rowCount(m_sheets.back()) > MostRows)
        beginSheet();
    for (qsizetype column = 0; column < m_captions.size(); ++column)
        put(fields.value(column));
    return {};
}

Result<void> Workbook::addNote(const QString &text)
{
    const QList<qsizetype> widths = m_widths;
    Result<void> added = addRow({text});
    m_widths = widths;
    return added;
}

WorkbookWriter::WorkbookWriter(const Workbook &workbook, QIODevice &device)
    : m_workbook(workbook), m_file(device, "Workbook"), m_pending(globals() + sheetHead(0))
{
}

QByteArray WorkbookWriter::globals() const
{
    const QByteArray front =
        beginning(0x0005) + BiffRecord(CodePage).u16(1200).bytes() +
        BiffRecord(Window1).u16(0).u16(0).u16(0x4000).u16(0x2000).u16(0x0038).u16(0).u16(0).u16(1).u16(600).bytes() +
        formats();
    const QByteArray back = m_workbook.m_texts.bytes() + BiffRecord(Eof).bytes();

    // A sheet is found by its place in the stream, behind all these records: made once for their size, once in earnest.
    QByteArray sheets;
    for (int round = 0; round < 2; ++round) {
        qsizetype offset = front.size() + sheets.size() + back.size();
        sheets.clear();
        for (size_t number = 0; number < m_workbook.m_sheets.size(); ++number) {
            const QString name =
                number == 0 ? m_workbook.m_sheetName : u"%1 %2"_qs.arg(m_workbook.m_sheetName).arg(number + 1);
            sheets += BiffRecord(BoundSheet).u32(static_cast<quint32>(offset)).u16(0).name(name).bytes();
            offset += sheetSize(number);
        }
    }
    return front + sheets + back;
}

QByteArray WorkbookWriter::sheetHead(size_t number) const
{
    QByteArray records = beginning(0x0010);
    const qsizetype columns = m_workbook.m_captions.size();
    for (qsizetype column = 0; column < columns; ++column) {
        // In 256ths of a character; bold captions and the border want some room.
        const auto width =
            static_cast<unsigned>(qBound(qsizetype{4}, m_workbook.m_widths[column] + 3, qsizetype{60}) * 256);
        const auto place = static_cast<unsigned>(column);
        records += BiffRecord(ColumnInfo).u16(place).u16(place).u16(width).u16(TextFormat).u16(0).u16(0).bytes();
    }
    const auto rows = static_cast<quint32>(m_workbook.rowCount(m_workbook.m_sheets[number]));
    return records + BiffRecord(Dimensions).u32(0).u32(rows).u16(0).u16(static_cast<unsigned>(columns)).u16(0).bytes();
}

QByteArray WorkbookWriter::sheetTail(size_t number) const
{
    const unsigned view = number == 0 ? 0x06b6 : 0x00b6; // the first sheet is the one that is shown
    return BiffRecord(Window2).u16(view).u16(0).u16(0).u16(0x40).u16(0).u16(0).u16(0).u32(0).bytes() +
           BiffRecord(Eof).bytes();
}

qsizetype WorkbookWriter::sheetSize(size_t number) const
{
    return sheetHead(number).size() + m_workbook.m_sheets[number].used * CellSize + sheetTail(number).size();
}

QByteArray WorkbookWriter::cells(const Workbook::Sheet &sheet)
{
    QByteArray records;
    records.reserve(Slice);
    const qsizetype columns = m_workbook.m_captions.size();
    for (; m_cell < sheet.cells.size() && records.size() + CellSize <= Slice; ++m_cell) {
        const quint32 text = sheet.cells[m_cell];
        if (text == Workbook::NoText)
            continue;
        const auto row = static_cast<quint16>(m_cell / columns);
        const auto column = static_cast<quint16>(m_cell % columns);
        std::array<char, CellSize> record;
        qToLittleEndian(quint16{LabelSst}, record.data());
        qToLittleEndian(quint16{CellSize - BiffRecord::HeaderSize}, record.data() + 2);
        qToLittleEndian(row, record.data() + 4);
        qToLittleEndian(column, record.data() + 6);
        qToLittleEndian(static_cast<quint16>(row == 0 ? CaptionFormat : TextFormat), record.data() + 8);
        qToLittleEndian(text, record.data() + 10);
        records.append(record.data(), CellSize);
    }
    return records;
}

Result<bool> WorkbookWriter::step()
{
    if (m_written == m_pending.size()) {
        m_written = 0;
        if (m_sheet == m_workbook.m_sheets.size()) {
            const Result<void> closed = m_file.close();
            return closed ? Result<bool>(true) : closed.fault();
        }
        const Workbook::Sheet &sheet = m_workbook.m_sheets[m_sheet];
        m_pending = cells(sheet);
        if (m_cell == sheet.cells.size()) {
            m_pending += sheetTail(m_sheet);
            m_cell = 0;
            if (++m_sheet < m_workbook.m_sheets.size())
                m_pending += sheetHead(m_sheet);
        }
    }
    const qsizetype count = qMin(Slice, m_pending.size() - m_written);
    const Result<void> written = m_file.write(m_pending.constData() + m_written, count);
    m_written += count;
    return written ? Result<bool>(false) : written.fault();
}
