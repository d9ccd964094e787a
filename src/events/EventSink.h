#pragma once

#include "events/SearchResults.h"

/// Takes the events that a search finds, in their order, for whoever wants no results that can be looked at again.
class EventSink
{
public:
    virtual ~EventSink() = default;

    /// @param row  stands on the event
    virtual Result<void> add(const Statement &row, const SearchResults::Columns &columns) = 0;
    /// What was added so far stays.
    virtual void keep() = 0;
    /// What was added since keep() was written to while it was read: it does not count, and comes again.
    virtual void takeBack() = 0;
};
