#pragma once

#include "texts/OwnText.h"
#include "texts/TextTable.h"

extern const std::array<TextRow<OwnText>, OwnTextCount> ownTextTable;
