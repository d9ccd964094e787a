#pragma once

#include "platform/Result.h"

#include <QString>
#include <QStringList>

#include <chrono>

/// The printers installed on this system, in the print system's order.
///
/// A print system that does not answer is waited for no longer than a second, five for taking a job, and counts as one
/// that does not run for half a minute.
class Printers
{
public:
    virtual ~Printers() = default;

    /// Device names; empty when none is installed or the print system does not run.
    virtual QStringList names() const;
    /// Device name of the default printer, "" when there is none.
    virtual QString defaultName() const;

    /// Hands a PDF file over to a printer, and returns when the print system has taken it or said no.
    /// @param printer  its device name; @param title  of the job, for lists of jobs
    /// @return NotFound when there is no such printer, AccessDenied when it accepts no jobs, or none of this user,
    ///         InputOutput when the print system cannot be reached or reports any other fault
    virtual Result<void> send(const QString &printer, const QString &file, const QString &title) const;

    /// Index of the default printer in names(); 0 when none of them is the default, -1 when no printer is installed.
    int defaultIndex() const;
    /// True when @p index is below the number of installed printers (negative ones included).
    bool isValid(int index) const { return index < names().size(); }

private:
    struct List {
        QStringList names;
        QString byDefault;
    };
    List list() const;

    mutable std::chrono::steady_clock::time_point m_silentUntil;
};
