#pragma once

#include "codes/Event.h"

/// An event that cannot go to the archive of its day yet.
struct WaitingEvent {
    enum class Mark {
        Registered = 0, ///< its code is, as far as was known when it came
        Undecided = 1,  ///< nobody could say yet whether it is
        Brought = 2,    ///< stood in an archive that was replaced or deleted, and may stand in the new one too
    };

    QDate day; ///< of the archive that it belongs to
    Event event;
    Mark mark = Mark::Registered;
    qint64 copy = 0;   ///< of a brought one: it was the n-th of equal events there, counted from 1
    qint64 place = 0;  ///< ProgEv under which it may stand in its archive already, a brought one: had before; 0 = none
    qint64 number = 0; ///< the spool's own: above 0 on disk, below in memory
};
