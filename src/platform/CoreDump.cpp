#include "platform/CoreDump.h"

#include <sys/prctl.h>
#include <sys/resource.h>

void forbidCoreDumps()
{
    constexpr rlimit none = {0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    // The limit does not hold for a program that the system hands its dumps to.
    ::prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
}
