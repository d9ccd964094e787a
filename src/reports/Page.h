#pragma once

#include "platform/Result.h"

#include <QDeadlineTimer>
#include <QString>

/// The printable area of the present page of a document. Lengths are twips (1440 to the inch) from its upper left
/// corner, and every one that is measured is that of the device which is painted.
class Page
{
public:
    virtual ~Page() = default;

    virtual double width() const = 0;
    virtual double height() const = 0;

    /// Font of all that is written and measured from now on; a new page keeps it. The face is a fixed-pitch one.
    virtual void setFont(int points, bool isBold) = 0;
    virtual double textWidth(const QString &text) const = 0;
    /// Height of a line, the same for every text.
    virtual double textHeight() const = 0;

    /// Writes a line. @param x, @param y  its upper left corner
    virtual void text(double x, double y, const QString &text) = 0;
    /// A thin line from one point to another.
    virtual void rule(double x1, double y1, double x2, double y2) = 0;
    /// A rectangle filled with light grey, without a border; what is drawn later lies upon it.
    virtual void band(double x, double y, double width, double height) = 0;

    /// Ends the page and begins the next. @return false when the document cannot go on
    virtual bool newPage() = 0;
};

/// A document that is printed piece by piece, so that nothing else has to wait for it.
class Report
{
public:
    virtual ~Report() = default;

    /// Prints on until then, at least one row. @param page  the same at each call
    /// @return true when all is printed; InputOutput when the device takes no further page, else why what is to be
    /// printed cannot be read
    virtual Result<bool> step(Page &page, const QDeadlineTimer &until) = 0;
};
