#pragma once

#include "platform/Result.h"

#include <QMarginsF>
#include <QSizeF>
#include <QStringList>

/// The printers installed on this system, in the print system's order.
struct PrinterList {
    QStringList names;
    QString byDefault; ///< "" when none of them is the default

    /// Index of the default printer; 0 when none of them is the default, -1 when no printer is installed.
    int defaultIndex() const;
};

/// Paper of a printer and the part of it that cannot be printed on, in millimetres; A4 with some margin for a printer
/// that does not tell.
struct Paper {
    QSizeF size{210, 297};
    QMarginsF margins{10, 10, 10, 10};
};

/// The print system. It may be another machine, which may be off: no function returns before it has answered, however
/// long that takes. They keep nothing, and are called from threads.
class PrintSystem
{
public:
    virtual ~PrintSystem() = default;

    /// Empty when none is installed or the print system does not run.
    virtual Result<PrinterList> list() const;
    virtual Result<Paper> paper(const QString &printer) const;
    /// Hands a PDF file over to a printer.
    /// @param title  of the job, for lists of jobs
    /// @return NotFound when there is no such printer, AccessDenied when it accepts no jobs, or none of this user,
    ///         InputOutput when the print system cannot be reached or reports any other fault
    virtual Result<void> send(const QString &printer, const QString &file, const QString &title) const;
};
