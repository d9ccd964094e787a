#pragma once

#include "platform/Task.h"

#include <functional>
#include <vector>

/// A few pieces of work that cannot be divided, one after the other. The first fault ends them all.
class Pieces : public Task
{
public:
    using Piece = std::function<Result<void>()>;

    explicit Pieces(std::vector<Piece> pieces) : m_pieces(std::move(pieces)) {}

    Result<bool> step(const QDeadlineTimer &until) override
    {
        while (m_done < m_pieces.size()) {
            if (const Result<void> done = m_pieces[m_done](); !done)
                return done.fault();
            if (++m_done < m_pieces.size() && until.hasExpired())
                return false;
        }
        return true;
    }
    Progress progress() const override { return {static_cast<qint64>(m_done), static_cast<qint64>(m_pieces.size())}; }

private:
    const std::vector<Piece> m_pieces;
    std::size_t m_done = 0;
};
