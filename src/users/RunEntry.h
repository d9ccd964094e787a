#pragma once

#include <QString>

/// Rules of the two boxes that a run of codes is typed into.

/// What stays of the number of transmitters, or of the start code, after a change of its box: no characters at its end
/// that are not digits.
QString acceptedDigits(const QString &typed);

enum class StartHint { None, NumberFirst, AboveMaximum };

struct StartEntry {
    QString text; ///< what the box of the start code becomes
    StartHint hint = StartHint::None;
};

/// The start code after a change of its box.
/// @param number  text of the other box, which is to be filled first
StartEntry acceptedStart(const QString &typed, const QString &number);

enum class RunFault { None, NumberNotAboveZero, StartNotAboveZero, AboveMaximum };

struct RunCheck {
    RunFault fault = RunFault::None;
    int first = 0; ///< like the next, meaningful when fault is None
    int count = 0;
};

/// Whether a run can be added. The number may have grown after the start code was accepted.
RunCheck checkRun(const QString &number, const QString &start);
