#pragma once

#include "platform/Result.h"

#include <QByteArray>
#include <QDeadlineTimer>

/// The standard output, whose reader takes what is written at a pace of his own. Nothing is lost, and nothing waits
/// longer than it may.
class StandardOutput
{
public:
    StandardOutput();
    ~StandardOutput();
    StandardOutput(const StandardOutput &) = delete;
    StandardOutput &operator=(const StandardOutput &) = delete;

    /// Writes until all is taken, or until @p until. @param bytes  what is written is removed from its front
    /// @return NotOpen when the reader has gone; DiskFull, InputOutput
    Result<void> write(QByteArray &bytes, const QDeadlineTimer &until);

    /// Whether it is a person's screen.
    static bool isTerminal();
    /// Columns of that; 0 when they are not known.
    static int columns();

private:
    int m_own = -1;
};

/// Whether the standard error is a person's screen.
bool isErrorOutputTerminal();
