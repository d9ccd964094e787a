#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

/// What a row of the service journal tells. The numbers stand in files: none is ever given another meaning, and a
/// reader passes over those that it does not know. Details are codes and numbers, never a name or a password.
enum class JournalKind {
    Started = 1,     ///< version
    Ended = 2,       ///< in order
    FoundCutOff = 3, ///< the run before did not end in order; momentText() of its last sign of life, "" without one
    YearTurned = 4,  ///< goes on in the file of another year
    ClockMoved = 5,  ///< from, to: momentText() each
    Slept = 6,       ///< stamped with the moment the PC went to sleep
    Woke = 7,

    PortOpened = 20,       ///< COM number
    PortLent = 21,         ///< the port window has it
    PortLost = 22,         ///< it failed, or was pulled out
    PortBack = 23,         ///< COM number
    PortNotAvailable = 24, ///< COM number, fault
    InterfaceAnswers = 25,
    InterfaceSilent = 26,      ///< momentText() of when it was heard of last, "" if not since the port was opened
    InterfaceSwitchedOn = 27,  ///< at most one a minute
    ConfigurationDiffers = 28, ///< protocol, enabled channels

    Enabled = 40,  ///< cause: 0 start, 1 band, 2 holiday, 3 end
    Disabled = 41, ///< likewise

    RegisterSaved = 60, ///< added, changed and deleted users, commas between; "" when not counted
    BandsSaved = 61,
    HolidaysSaved = 62,
    SettingChanged = 63,  ///< key, value
    PasswordSet = 64,     ///< which: 1 main, 2 users, 3 diagnostics
    PasswordRemoved = 65, ///< which
    PasswordWrong = 66,   ///< which
    Searched = 67,        ///< range, rows
    Printed = 68,         ///< range, rows
    Exported = 69,        ///< range, rows
    BackupMade = 70,
    BackupFailed = 71, ///< fault
    Restored = 72,
    Pruned = 73, ///< by the archive tool: first day that was kept, files deleted

    StoringFails = 80, ///< fault
    StoringResumes = 81,
    EventsLost = 82, ///< how many
};

/// A point of time as the PC's clock told it.
struct Moment {
    qint64 seconds = 0; ///< since 1970, UTC
    int offset = 0;     ///< minutes that local time was ahead of it
    bool operator==(const Moment &) const = default;
};

struct JournalRow {
    qint64 number = 0; ///< running, over all years; a number that is missing is a row that is lost
    Moment at;
    JournalKind kind = JournalKind::Started;
    QString first; ///< details, see JournalKind
    QString second;
};

Moment momentOf(const QDateTime &time);
QDateTime localTime(const Moment &moment);
/// @param date "dd-mm-yyyy", @param time "hh:mm:ss", local; @return nothing when one is not valid
std::optional<Moment> momentOf(const QString &date, const QString &time, qint64 offset);
/// "yyyy-mm-ddThh:mm:ss+hh:mm"
QString momentText(const Moment &moment);
std::optional<Moment> momentOfText(const QString &text);
