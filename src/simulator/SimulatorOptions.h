#pragma once

#include "simulator/RecordSource.h"
#include "simulator/Records.h"
#include "simulator/Traffic.h"

#include <QStringList>

#include <optional>

namespace simulator {

/// What the command line asks for.
struct SimulatorOptions {
    bool help = false;
    QString link; ///< "" = none
    InterfaceSetting setting;
    ReplyFault fault = ReplyFault::None;
    Traffic::Plan traffic;
    double filePerSecond = 0; ///< 0 = commands of the file follow each other at once
    QString file;             ///< "" = none
    bool repeat = false;
    QList<Code> codes;
    std::optional<quint32> seed;
    bool fast = false;
    bool verbose = false;
    bool exitWhenDone = false;
};

struct ParsedOptions {
    SimulatorOptions options;
    QString fault; ///< what is wrong with the arguments; "" when nothing is
};

/// @param arguments  the program's name first
ParsedOptions parseOptions(const QStringList &arguments);

/// What --help prints.
QString helpText();

} // namespace simulator
