#pragma once

#include "archive/EventLines.h"
#include "events/EventQuery.h"

#include <QStringList>

#include <optional>

namespace tool {

enum class CommandName { Search, Follow, Users, Coverage, Verify, Backup, Prune };

/// What the command line asks for.
struct ToolOptions {
    CommandName command = CommandName::Search;
    bool help = false;
    bool version = false;
    QString folder; ///< "" when none is given, likewise the following ones
    QString passwordFile;
    TypedQuery query; ///< days and times are without a fault; of coverage only the days count
    QString surname;
    QString name;
    Format format = Format::Table;
    char separator = ',';
    QString output;
    QString cursor;
    bool isQuick = false;
    QDate before;
    bool isSure = false;
    QString target;
    std::optional<Message> wrong; ///< what is wrong with it; the rest does not count then
};

/// @param arguments  the program's own name first
ToolOptions readToolOptions(const QStringList &arguments, QDate today);

/// What --help tells, in lines of at most 80 characters.
QString toolHelp(const Texts &texts);

} // namespace tool
