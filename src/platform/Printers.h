#pragma once

#include <QString>
#include <QStringList>

/// The printers installed on this system, in the print system's order.
class Printers
{
public:
    virtual ~Printers() = default;

    /// Device names; empty when none is installed or the print system does not run.
    virtual QStringList names() const;
    /// Device name of the default printer, "" when there is none.
    virtual QString defaultName() const;

    /// Index of the default printer in names(); 0 when none of them is the default, -1 when no printer is installed.
    int defaultIndex() const;
    /// True when @p index is below the number of installed printers (negative ones included).
    bool isValid(int index) const { return index < names().size(); }
};
