#pragma once

#include "support/Fixtures.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>

/// What another program reads in all workbooks of @p folder, in order of their names, each a list of sheets: name,
/// weights of the fonts of the first and of the second row, number of rows, then the first two rows, the last, and the
/// one before it.
inline QJsonArray readWorkbooks(const QString &folder)
{
    static const QString script = uR"(import glob, json, struct, sys, xlrd
def weights(book, sheet, row):
    cells = range(len(sheet.row(row))) if row < sheet.nrows else []
    fonts = [book.font_list[book.xf_list[sheet.cell_xf_index(row, c)].font_index] for c in cells]
    return sorted({f.weight for f in fonts})
def content(sheet, row):
    return sheet.row_values(row) if row < sheet.nrows else []
books = []
for name in sorted(glob.glob(sys.argv[1] + '/*')):
    books.append(xlrd.open_workbook(name, formatting_info=True))
    with open(name, 'rb') as file:
        stream, place, size = xlrd.compdoc.CompDoc(file.read()).locate_named_stream('Workbook')
    kind = 0
    while kind != 10:  # a record may hold 8,224 bytes; this reader would take more
        kind, length = struct.unpack('<HH', stream[place:place + 4])
        assert length <= 8224, length
        place += 4 + length
print(json.dumps([[[s.name, weights(b, s, 0), weights(b, s, 1), s.nrows, content(s, 0), content(s, 1),
    content(s, s.nrows - 1), content(s, s.nrows - 2)] for s in b.sheets()] for b in books])))"_s;
    QProcess reader; // the package belongs to the system's own Python, whichever stands first in the path
    reader.start(u"/usr/bin/python3"_s, {u"-c"_s, script, folder});
    if (!reader.waitForFinished(120'000) || reader.exitCode() != 0)
        qWarning("no workbook read (is python3-xlrd installed?): %s", reader.readAllStandardError().constData());
    return QJsonDocument::fromJson(reader.readAllStandardOutput()).array();
}
