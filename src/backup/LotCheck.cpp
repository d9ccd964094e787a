#include "backup/LotCheck.h"

#include "archives/Database.h"

namespace {

/// When the program ends the thread must be out of the libraries, but a device that hangs may not hold the end up.
constexpr std::chrono::milliseconds patience(200);

std::optional<FaultCode> faultOf(const LotCheck::Archive &archive)
{
    Result<Database> opened = Database::open(archive.path, archive.rawKey, Database::Use::ThrowAway);
    if (!opened)
        return opened.fault().code;
    const Result<void> read = opened.value().readPages();
    return read ? std::nullopt : std::optional(read.fault().code);
}

} // namespace

LotCheck::LotCheck(const std::vector<Archive> &archives, const std::function<Result<bool>()> &flush)
    : m_errand(
          [archives, flush, isGivenUp = m_isGivenUp]() -> Result<Faults> {
              Faults faults;
              for (const Archive &archive : archives) {
                  if (*isGivenUp)
                      return faults;
                  faults.push_back(faultOf(archive));
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
