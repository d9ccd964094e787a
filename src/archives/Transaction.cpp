#include "archives/Transaction.h"

Transaction::~Transaction()
{
    takeBack();
}

Result<void> Transaction::begin(bool toWrite)
{
    Result<void> begun = m_database.execute(toWrite ? "BEGIN IMMEDIATE" : "BEGIN");
    m_open = begun.ok();
    return begun;
}

Result<void> Transaction::commit()
{
    Result<void> done = m_database.execute("COMMIT");
    if (done)
        m_open = false;
    else
        takeBack();
    return done;
}

void Transaction::takeBack()
{
    // After some faults the library has done it already.
    if (std::exchange(m_open, false))
        (void)m_database.execute("ROLLBACK");
}
