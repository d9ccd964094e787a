#pragma once

#include <QStringList>

/// The languages in their order, from Texts::FirstLanguage on, each in its own words: whoever reads no other finds it.
const QStringList &languageNames();
