#pragma once

#include <QtGlobal>

#include <cmath>

namespace simulator {

/// Between two looks at what is due.
inline constexpr int TickMilliseconds = 10;

/// How much is due when things come at a steady rate. Fractions are carried on: the rate holds however unevenly it is
/// asked.
class Pace
{
public:
    /// @param perSecond  above 0
    explicit Pace(double perSecond) : m_perSecond(perSecond) {}

    /// Begins anew: nothing is due yet. @param now  milliseconds of a monotonic clock
    void start(qint64 now)
    {
        m_start = now;
        m_taken = 0;
    }
    qint64 due(qint64 now) const
    {
        return static_cast<qint64>(std::floor(static_cast<double>(now - m_start) * m_perSecond / 1000.0)) - m_taken;
    }
    void take(qint64 count) { m_taken += count; }

private:
    double m_perSecond;
    qint64 m_start = 0;
    qint64 m_taken = 0;
};

} // namespace simulator
