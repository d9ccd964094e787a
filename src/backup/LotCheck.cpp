#include "backup/LotCheck.h"

#include "archives/Database.h"
#include "archives/PageProof.h"

#include <QDeadlineTimer>

namespace {

/// When the program ends the thread must be out of the libraries, but a device that hangs may not hold the end up.
constexpr std::chrono::milliseconds patience(200);

std::optional<FaultCode> faultOf(const LotCheck::Archive &archive)
{
    if (archive.isSettled && hasProvenPages(archive.path, archive.rawKey))
        return {};
    Result<Database> opened = Database::open(archive.path, archive.rawKey, Database::Use::ThrowAway);
    if (!opened)
        return opened.fault().code;
    const Result<void> read = opened.value().readPages();
    return read ? std::nullopt : std::optional(read.fault().code);
}

} // namespace

LotCheck::LotCheck(const std::vector<Archive> &archives, const std::function<Result<bool>()> &flush)
    : m_reading(
          [archives, flush, isGivenUp = m_isGivenUp]() -> Result<Faults> {
              Faults faults;
              for (const Archive &archive : archives) {
                  if (*isGivenUp)
                      return faults;
                  faults.push_back(faultOf(archive));
              }
              return faults;
          },
          {}),
      m_flush(flush, {})
{
}

LotCheck::~LotCheck()
{
    *m_isGivenUp = true;
    (void)m_reading.wait(patience);
}

std::optional<Result<LotCheck::Faults>> LotCheck::wait(std::chrono::milliseconds most)
{
    const QDeadlineTimer until(most);
    const std::optional<Result<bool>> flushed = m_flush.wait(most);
    if (!flushed)
        return std::nullopt;
    if (!*flushed)
        return Result<Faults>(flushed->fault());
    return m_reading.wait(std::chrono::milliseconds(until.remainingTime()));
}
