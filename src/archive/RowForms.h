#pragma once

#include "archives/Database.h"

#include <QDate>
#include <QList>

namespace tool {

/// A row that is not as it should be.
struct RowFault {
    enum class Kind {
        Form,  ///< a value that the supervisor never stores
        Date,  ///< an event of another day than the file's
        Order, ///< an event more than an hour earlier than one in front of it: more than a repeated hour explains
    };
    Kind kind = Kind::Form;
    qint64 number = 0; ///< of the row
    bool operator==(const RowFault &) const = default;
};

/// Looks at each row of the tables that are known.
/// @param day  that the events of an archive are of, or not valid. Events of the day behind it are in order: while the
///             archive of that could not be opened they are stored here
Result<QList<RowFault>> faultsOfRows(Database &database, QDate day);

} // namespace tool
