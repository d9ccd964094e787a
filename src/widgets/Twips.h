#pragma once

/// Screen pixels of a length in twips, fifteen to one, to the nearest.
constexpr int pixels(int twips)
{
    return (twips >= 0 ? twips + 7 : twips - 7) / 15;
}
