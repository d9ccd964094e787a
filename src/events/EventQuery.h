#pragma once

#include "codes/UserDirectory.h"
#include "journal/CoverageReading.h"
#include "texts/Text.h"

#include <QDate>

#include <array>

/// What the operator searches the events for, but for the time.
struct EventChoice {
    enum class State { All, OnlyEnabled, OnlyDisabled };
    /// A user who was chosen by name. @c code is "" when the name that was typed is nobody's.
    struct Person {
        QString code;
    };

    QString code; ///< digits, zeros in front do not count, "" = any; counts when no person is chosen
    std::optional<Person> person;
    std::array<bool, 4> channels{true, true, true, true}; ///< A to D
    bool transmitters = true;
    bool keypads = true;
    State state = State::All;
};

/// A search as it stands in the boxes.
struct TypedQuery : EventChoice {
    QString firstDay; ///< "dd/mm/yyyy" when it is without a fault, as is lastDay
    QString lastDay;
    QString from = QStringLiteral("00:00:00"); ///< "hh:mm:ss" when it is without a fault, as is to
    QString to = QStringLiteral("23:59:59");
};

/// A search that can be done.
struct EventQuery : EventChoice {
    QDate firstDay;
    QDate lastDay;
    QTime from; ///< window of the time of day, on each day anew
    QTime to;

    DailyHours hours() const { return {firstDay, lastDay, from, to}; }
};

enum class QueryFault { None, FirstDay, LastDay, From, To, Order, NoChannel, NoType, UnknownPerson };

/// First of the faults, in the order in which the operator is told them.
QueryFault checkQuery(const TypedQuery &query, const UserDirectory &users);
/// What the operator is told of it. @param fault  not None
Text queryText(QueryFault fault);

/// @param typed  without a fault
EventQuery eventQuery(const TypedQuery &typed);

/// What the events of a query meet in the archive of a day.
struct DayCondition {
    QString where; ///< its parameters are numbered (?1, ?2, ...), so that it can stand in a statement more than once
    SqlValues values;
};

DayCondition dayCondition(const EventQuery &query);
