#pragma once

#include "simulator/Records.h"

#include <QList>
#include <QRandomGenerator>

#include <optional>

namespace simulator {

struct Code {
    CodeKind kind = CodeKind::Transmitter;
    quint32 number = 0;
};

/// Makes up records from a list of codes: in turn, each on the next channel, or drawn by chance.
class RecordSource
{
public:
    /// @param codes  at least one
    /// @param seed   draws code and channel, the same for the same seed; nothing = in turn
    RecordSource(QList<Code> codes, std::optional<quint32> seed);

    EventRecord next();

private:
    QList<Code> m_codes;
    std::optional<QRandomGenerator> m_random;
    qsizetype m_turn = 0;
};

} // namespace simulator
