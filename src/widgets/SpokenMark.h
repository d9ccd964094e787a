#pragma once

#include "texts/OwnText.h"
#include "texts/Texts.h"

#include <functional>

/// What a cell that holds an X, or none, says when it is read aloud.
inline std::function<QString(const QString &)> spokenMark(const Texts &texts)
{
    return [isMarked = texts[OwnText::Marked], isNot = texts[OwnText::NotMarked]](const QString &mark) {
        return mark == QLatin1Char('X') ? isMarked : isNot;
    };
}
