#pragma once

#include "platform/Disk.h"
#include "users/ImportCheck.h"

#include <memory>

class Texts;

// What is told of the lines of a dry run.

QString outcomeText(const Texts &texts, ImportOutcome outcome);
/// Why a line is refused, or what about it is to be looked at; "" where there is nothing to say.
QString reasonText(const Texts &texts, const ImportLine &line);
/// How many lines have which outcome.
QString countsText(const Texts &texts, const ImportCheck &check);

/// Writes the refused lines into a file that can be mended and imported again: the fields as they stand in the file,
/// below headings, each line with its number and the reason behind them.
/// @param disk    like @p texts, must outlive the task
/// @param target  absolute path
/// @param check   a dry run that has ended
std::unique_ptr<Task> refusedFile(Disk &disk, const QString &target, const Texts &texts, char separator,
                                  const ImportCheck &check);
