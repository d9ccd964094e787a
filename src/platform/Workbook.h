#pragma once

#include "platform/CompoundFile.h"
#include "platform/SharedStrings.h"

#include <QList>
#include <QStringList>

#include <vector>

/// A table of texts, to be written as an Excel 97-2003 workbook.
///
/// A sheet holds the captions in bold and 65,535 rows below them; more rows go on in further sheets, named with a
/// number behind ("Eventi 2"), each under the captions. Every text lies in memory once, and a row takes 4 bytes a
/// column.
class Workbook
{
public:
    static constexpr qsizetype MostRows = 65535; ///< of one sheet, the captions not counted

    /// @param sheetName  1 to 25 characters, none of []:*?/\ .
    /// @param captions   one for each column, at most 256
    Workbook(const QString &sheetName, const QStringList &captions);

    /// @param fields  one for each column; "" leaves its cell empty
    /// @return        Damaged when a text is longer than a cell can hold: nothing is cut
    Result<void> addRow(const QStringList &fields);
    /// Adds a row of one text, which runs over the columns beside it and makes none of them wider.
    Result<void> addNote(const QString &text);

private:
    friend class WorkbookWriter;

    static constexpr quint32 NoText = 0xffffffff;

    struct Sheet {
        QList<quint32> cells; ///< row by row: number of the text, or NoText
        qsizetype used = 0;   ///< cells that have a text
    };

    void beginSheet();
    void put(const QString &text);
    qsizetype rowCount(const Sheet &sheet) const { return sheet.cells.size() / m_captions.size(); }

    QString m_sheetName;
    QStringList m_captions;
    QList<qsizetype> m_widths; ///< longest text of each column, in characters
    SharedStrings m_texts;
    std::vector<Sheet> m_sheets;
};

/// Writes a workbook piece by piece, so that its owner can do other things in between.
class WorkbookWriter
{
public:
    /// @param workbook  complete; must outlive this object, as must @p device: open for writing, random access, empty
    WorkbookWriter(const Workbook &workbook, QIODevice &device);

    /// Writes the next 64 KiB or less. @return true when the file is whole, InputOutput when the device failed
    Result<bool> step();

private:
    QByteArray globals() const;
    QByteArray sheetHead(size_t number) const;
    QByteArray sheetTail(size_t number) const;
    qsizetype sheetSize(size_t number) const;
    QByteArray cells(const Workbook::Sheet &sheet);

    const Workbook &m_workbook;
    CompoundFile m_file;
    QByteArray m_pending; ///< made, not written yet
    qsizetype m_written = 0;
    size_t m_sheet = 0;
    qsizetype m_cell = 0; ///< of m_sheet: the next one to be made
};
