#pragma once

#include "journal/JournalRow.h"
#include "texts/Texts.h"

/// What rows of the journal are about, as the operator chooses them.
enum class JournalGroup { Service, Link, Enabling, Changes, Faults };
inline constexpr int JournalGroupCount = static_cast<int>(JournalGroup::Faults) + 1;

/// Kinds of a later version go by their number, in steps of 20; past the last group they belong to the service.
JournalGroup groupOf(JournalKind kind);
QString groupWords(JournalGroup group, const Texts &texts);

/// What a row tells, in one sentence without its moment. Details that cannot be read are left out.
QString rowWords(const JournalRow &row, const Texts &texts);
