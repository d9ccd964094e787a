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
    /// How many there are to headings. Each is one annotation or more, with a URI of "#" and the heading's number.
    int links = 0;
};

/// Prints a manual on A4. Besides Markdown: what manualText() takes, and a rule across the page begins a new one.
///
/// @param pictures  where they are
/// @throw std::runtime_error  a picture is missing, or the heading of a link
PrintedManual printManual(const QString &markdown, const QDir &pictures);
