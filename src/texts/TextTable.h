#pragma once

#include "texts/Text.h"

#include <array>
#include <cstddef>

/// One text in the four languages, UTF-8. Lines inside a text are joined by CR LF; "&" marks the access key of a menu
/// or button caption. No pointer is null and no text is empty.
template<typename Name>
struct TextRow {
    Name name;
    const char *italian;
    const char *english;
    const char *french;
    const char *german;
};

/// @return  number of the first row that does not stand at the value of its constant or lacks a language; the number
///          of rows when there is none
template<typename Name, size_t Count>
consteval size_t rowsInOrder(const std::array<TextRow<Name>, Count> &table)
{
    for (size_t i = 0; i < Count; ++i) {
        const TextRow<Name> &row = table[i];
        if (static_cast<size_t>(row.name) != i || !row.italian || !row.english || !row.french || !row.german)
            return i;
    }
    return Count;
}

/// Every text of the program; the row of a text stands at the value of its constant.
extern const std::array<TextRow<Text>, TextCount> textTable;
