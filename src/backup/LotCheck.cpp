#include "backup/LotCheck.h"

#include "archives/WholeReading.h"

namespace {

constexpr int turnMilliseconds = 5;
/// When the program ends the thread must be out of the libraries, but a device that hangs may not hold the end up.
constexpr std::chrono::milliseconds patience(200);

std::optional<FaultCode> faultOf(const LotCheck::Archive &archive, const std::atomic<bool> &isGivenUp)
{
    Result<Database> opened = Database::open(archive.path, archive.rawKey, Database::Use::ThrowAway);
    if (!opened)
        return opened.fault().code;
    WholeReading reading(opened.value());
    Result<bool> isRead = false;
    while (isRead && !isRead.value() && !isGivenUp)
        isRead = reading.step(QDeadlineTimer(turnMilliseconds));
    return isRead ? std::nullopt : std::optional(isRead.fault().code);
}

} // namespace

LotCheck::LotCheck(const std::vector<Archive> &archives, const std::function<Result<bool>()> &flush)
    : m_errand(
          [archives, flush, isGivenUp = m_isGivenUp]() -> Result<Faults> {
              Faults faults;
              for (const Archive &archive : archives) {
                  if (*isGivenUp)
                      return faults;
                  faults.push_back(faultOf(archive, *isGivenUp));
              }
              const Result<bool> flushed = flush();
              return flushed ? Result<Faults>(faults) : Result<Faults>(flushed.fault());
          },
          {})
{
}

LotCheck::~LotCheck()
{
    *m_isGivenUp = true;
    (void)m_errand.wait(patience);
}
