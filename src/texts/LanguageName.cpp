#include "texts/LanguageName.h"

const QStringList &languageNames()
{
    static const QStringList names = {QStringLiteral("Italiano"), QStringLiteral("English"), QStringLiteral("Français"),
                                      QStringLiteral("Deutsch")};
    return names;
}
