#pragma once

#include "texts/Texts.h"

#include <QString>
#include <QStringList>

#include <optional>

/// What the command line asks for.
struct CommandLine {
    bool console = false;
    bool demo = false;
    bool help = false;
    bool version = false;
    QString folder; ///< "" when none is given
    QString passwordFile;
    std::optional<int> port;      ///< 1 to 8
    std::optional<Message> wrong; ///< what is wrong with it; the rest does not count then
};

/// @param arguments  the program's own name first
CommandLine readCommandLine(const QStringList &arguments);

/// What --help tells, in lines of at most 80 characters.
QString commandLineHelp(const Texts &texts);
