#pragma once

#include <QDateTime>

/// The PC's clock. Dates and times are the operator's local ones; spans of time are measured monotonically, so that
/// setting the clock never stretches or cuts them.
class Clock
{
public:
    virtual ~Clock() = default;

    QDate date() const { return now().date(); }

    /// Local date and time in one reading: a date and a time read one after the other may belong to two days.
    virtual QDateTime now() const;
    /// Milliseconds since some fixed moment; never goes back.
    virtual qint64 monotonic() const;
    /// Milliseconds that the PC has slept since it was started: monotonic() stands still then.
    virtual qint64 asleep() const;
};
