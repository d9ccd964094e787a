#pragma once

#include "texts/Text.h"

#include <array>

/// One text in the four languages, UTF-8. Lines inside a text are joined by CR LF; "&" marks the access key of a menu
/// or button caption. No pointer is null and no text is empty.
struct TextRow {
    const char *italian;
    const char *english;
    const char *french;
    const char *german;
};

/// Every text of the program; the row of a text stands at the value of its constant.
extern const std::array<TextRow, TextCount> textTable;
