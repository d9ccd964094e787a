#include "backup/LotCheck.h"

#include "archives/Database.h"
#include "archives/PageProof.h"
#include "platform/FreshFile.h"

#include <QDeadlineTimer>

namespace {

/// When the program ends the thread should be out of the libraries; it stays while the device hangs, or an archive is
/// read as one.
constexpr std::chrono::milliseconds patience(15);

std::optional<FaultCode> faultOf(const LotCheck::Archive &archive, PageProof &proof, const std::stop_token &stop)
{
    if ((archive.isSettled && proof.holds(archive.path, archive.rawKey, stop)) || stop.stop_requested())
        return {};
    Result<Database> opened = Database::open(archive.path, archive.rawKey, Database::Use::ThrowAway);
    if (!opened)
        return opened.fault().code;
    const Result<void> read = opened.value().readPages();
    return read ? std::nullopt : std::optional(read.fault().code);
}

} // namespace

/// Waits for it. @return nothing when there is none any more
std::optional<LotCheck::Archive> LotCheck::Queue::next()
{
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return isEnded || !archives.empty(); });
    if (archives.empty())
        return std::nullopt;
    Archive archive = std::move(archives.front());
    archives.pop_front();
    return archive;
}

void LotCheck::Queue::end()
{
    const std::lock_guard lock(mutex);
    isEnded = true;
    changed.notify_one();
}

Result<LotCheck::Faults> LotCheck::readAll(Queue &queue, const std::stop_token &stop)
{
    Faults faults;
    PageProof proof;
    std::optional<Archive> archive;
    while (!stop.stop_requested() && (archive = queue.next())) {
        faults.push_back(faultOf(*archive, proof, stop));
        FreshFile::beginFlush(archive->path);
    }
    return faults;
}

LotCheck::~LotCheck()
{
    m_stop.request_stop();
    m_queue->end();
    if (m_reading)
        (void)m_reading->wait(patience);
}

void LotCheck::add(Archive archive)
{
    {
        const std::lock_guard lock(m_queue->mutex);
        m_queue->archives.push_back(std::move(archive));
        m_queue->changed.notify_one();
    }
    if (!m_reading)
        m_reading.emplace([queue = m_queue, stop = m_stop.get_token()] { return readAll(*queue, stop); },
                          Errand<Faults>::Then());
}

void LotCheck::finish(const std::function<Result<bool>()> &flush)
{
    m_queue->end();
    m_flush.emplace(flush, Errand<bool>::Then());
}

std::optional<Result<LotCheck::Faults>> LotCheck::wait(std::chrono::milliseconds most)
{
    const QDeadlineTimer until(most);
    const std::optional<Result<bool>> flushed = m_flush->wait(most);
    if (!flushed)
        return std::nullopt;
    if (!*flushed)
        return Result<Faults>(flushed->fault());
    return m_reading ? m_reading->wait(std::chrono::milliseconds(until.remainingTime())) : Result<Faults>(Faults());
}
