// Resident memory of the road after 5,000, 50,000 and 1,000,000 events, every one of them stored. Takes some minutes.

#include "archives/Tables.h"
#include "link/EventRoad.h"
#include "support/Fixtures.h"

#include <cstdio>

int main()
{
    TestFolder test;
    test.addUsers({{QStringLiteral("1"), QStringLiteral("TX")}});
    FakeClock clock;
    Notices notices;
    EventLog log(test.archives, clock, notices);
    log.open();
    UserDirectory users(test.archives, ArchiveName::UsersSnapshot);
    if (!users.open())
        return 1;
    EventRoad road(users, log, clock);
    int received = 0;
    for (const int goal : {5'000, 50'000, 1'000'000}) {
        for (; received < goal; ++received)
            road.RegistraEvento("R/A-000000001X..\r");
        std::printf("%9d events: %lld KiB resident\n", goal, static_cast<long long>(residentPages() * 4));
    }
    return 0;
}
