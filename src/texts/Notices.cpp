#include "texts/Notices.h"

namespace {

/// A fault that repeats while nobody looks must not grow the program: past this the newest are not queued.
constexpr qsizetype queueLimit = 1000;

} // namespace

void Notices::post(Icon icon, Message message)
{
    if (m_queue.size() < queueLimit)
        m_queue.append({icon, std::move(message)});
    Q_EMIT posted();
}
