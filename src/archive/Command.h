#pragma once

#include "archives/ArchiveStore.h"
#include "platform/Clock.h"
#include "platform/Task.h"
#include "texts/Texts.h"

#include <functional>

namespace tool {

/// What a command works with; all must outlive it.
struct Site {
    ArchiveStore &archives;
    const Texts &texts;
    const Clock &clock;
    /// Tells something to whoever started the tool, apart from the output.
    std::function<void(const Message &)> tell;
};

/// A subcommand at work. Its fault ends it: it is not done then.
class Command : public Task
{
public:
    Progress progress() const override { return {}; }
    /// Whether something was in order less than it should be, once the work is done. All of it has been told.
    virtual bool hasFaults() const { return false; }
    /// What ended it, in words.
    virtual Message words(const Fault &fault) const;
    /// Whether it goes on until somebody ends it, and is done then.
    virtual bool isEndless() const { return false; }
    /// What the command is at, for a line that is written over again and again; "" when there is nothing to say.
    virtual QString state() const { return {}; }
    /// Milliseconds until it has anything to do again.
    virtual int pause() const { return 0; }
};

/// "aaa, bbb" of days, as the operator sees them.
QString listOfDays(const QList<QDate> &days);

} // namespace tool
