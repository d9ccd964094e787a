#pragma once

#include <QString>

/// Version of the program, as its title and its windows show it.
inline QString programVersion()
{
    return QStringLiteral("1.03");
}
