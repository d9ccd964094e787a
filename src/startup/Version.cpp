#include "startup/Version.h"

QString programVersion()
{
    return QStringLiteral(KOR_VERSION);
}
