#include "simulator/RecordSource.h"

#include <utility>

namespace simulator {

namespace {

constexpr QByteArrayView channels = "ABCD";

} // namespace

RecordSource::RecordSource(QList<Code> codes, std::optional<quint32> seed) : m_codes(std::move(codes))
{
    if (seed)
        m_random.emplace(*seed);
}

EventRecord RecordSource::next()
{
    qsizetype code = m_turn % m_codes.size();
    qsizetype channel = m_turn % channels.size();
    if (m_random) {
        code = m_random->bounded(static_cast<int>(m_codes.size()));
        channel = m_random->bounded(static_cast<int>(channels.size()));
    }
    ++m_turn;
    EventRecord record;
    record.kind = m_codes[code].kind;
    record.code = m_codes[code].number;
    record.channel = channels[channel];
    return record;
}

} // namespace simulator
