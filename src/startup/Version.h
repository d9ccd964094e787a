#pragma once

#include <QString>

/// Version of the program, as its title and its windows show it: that of the build's project.
QString programVersion();
