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

/// The same in two letters, as names of files have it.
inline QString languageCode(int language)
{
    static const QStringList codes = {QStringLiteral("it"), QStringLiteral("en"), QStringLiteral("fr"),
                                      QStringLiteral("de")};
    return codes.value(language - Texts::FirstLanguage);
}
