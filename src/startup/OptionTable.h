#pragma once

#include "texts/Texts.h"

#include <QCommandLineParser>

#include <span>

/// An option of a command line.
struct Option {
    const char *name;
    const char *letter; ///< "" when it has no short form
    const char *value;  ///< what follows it; "" when nothing does
    OwnText meaning;
};

/// As it is typed: "--port N".
QString typed(const Option &option);

void addOptions(QCommandLineParser &parser, std::span<const Option> options);
/// What a parser did not understand: it knows that in English words only.
/// @param arguments  the program's own name first
Message misunderstood(const QCommandLineParser &parser, const QStringList &arguments, std::span<const Option> options);

/// @p words in lines of at most 80 characters, each but the first behind @p indent blanks.
QString wrapped(const QStringList &words, qsizetype indent);
/// The options with their meanings, one or more lines each.
QString optionsHelp(std::span<const Option> options, const Texts &texts);
