#pragma once

#include <QByteArray>
#include <QDir>
#include <QList>
#include <QString>

/// A heading of a manual, and where it was printed.
struct PrintedHeading {
    int level = 0;
    QString text;
    int page = 0; ///< from 0
    double y = 0; ///< of its upper edge, in points from that of the page
};

struct PrintedManual {
    QByteArray pdf;
    QString title;
    QList<PrintedHeading> headings;
    int links =
        0; ///< to headings; each is one annotation or more of the PDF, with a URI of "#" and the heading's number
};

/// Prints a manual on A4.
///
/// Besides Markdown: a rule across the page begins a new one; the line "<!-- contents -->" stands for a table of
/// contents, "<!-- picture: NAME -->" for the picture NAME.png. Links that lead out of the manual become plain words,
/// others name a heading as repository pages do: in small letters and digits, with "-" for blanks.
///
/// @param pictures  where they are
/// @throw std::runtime_error  a picture is missing, or the heading of a link
PrintedManual printManual(QString markdown, const QDir &pictures);
