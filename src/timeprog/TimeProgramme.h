#pragma once

#include "archives/ArchiveStore.h"
#include "platform/Clock.h"
#include "timeprog/NextChange.h"

#include <QObject>

/// Decides from bands and holidays whether the interface is enabled now.
class TimeProgramme : public QObject
{
    Q_OBJECT

public:
    /// Why the RTS line changed.
    enum class Cause { Start, Band, Holiday, End };
    Q_ENUM(Cause)
    enum class Part { Bands, Holidays };

    /// Both must outlive this object.
    TimeProgramme(ArchiveStore &archives, const Clock &clock, QObject *parent = nullptr);

    /// Reads an archive anew. When that fails nothing of it counts: without bands the interface is not enabled.
    Result<void> reload(Part part);
    /// While an editor has an archive, the state that was last applied stays.
    void suspend(Part part);
    bool isSuspended() const { return m_suspended != 0; }
    /// Reads again what was locked by another program when it was last read.
    void readLocked();

    /// Evaluates now and applies the answer: applied() is emitted, lineChanged() when the line changes by it.
    void run();
    /// Releases the line at the program's end.
    void end();
    /// Applied last; false before the first run.
    bool isEnabled() const { return m_enabled; }
    /// Until when that lasts, as a sentence: "Enabled until 18:00". While an editor is open nobody knows; "" before the
    /// first run.
    QString untilWhen(const Texts &texts) const;

Q_SIGNALS:
    /// @param enabled  the interface is inside its enabled time; the RTS line is asserted when it is not
    void applied(bool enabled);
    void lineChanged(bool asserted, TimeProgramme::Cause cause);
    /// An editor has an archive from now on.
    void suspended();

private:
    Result<void> read(Part part);
    void apply(bool enabled, Cause cause);

    ArchiveStore &m_archives;
    const Clock &m_clock;
    QList<Band> m_bands;
    QList<Holiday> m_holidays;
    unsigned m_suspended = 0; ///< a bit for each part
    unsigned m_locked = 0;    ///< the same
    bool m_started = false;
    bool m_enabled = false;
    TimeState m_state = TimeState::OutsideBands;
    /// What follows is looked for once: a year is long where nothing changes.
    struct Outlook {
        QDateTime from;
        std::optional<NextChange> next;
        bool holdsAt(const QDateTime &now) const;
    };
    mutable std::optional<Outlook> m_outlook;
};
