#pragma once

#include "texts/Texts.h"

/// A language in its own words, so that whoever reads no other finds it.
/// @param language  1 to 4
inline QString languageName(int language)
{
    static const QStringList names = {QStringLiteral("Italiano"), QStringLiteral("English"), QStringLiteral("Français"),
                                      QStringLiteral("Deutsch")};
    return names.value(language - Texts::FirstLanguage);
}
