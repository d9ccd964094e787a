#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QTimer>

#include <algorithm>
#include <cstdio>

/// Microseconds that one call of @p work takes.
template<class Work>
double microseconds(Work work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1000;
}

/// The value below which @p share of @p values lie; 0.5 is the median.
inline double quantile(QList<double> values, double share)
{
    std::sort(values.begin(), values.end());
    return values[static_cast<qsizetype>(share * static_cast<double>(values.size() - 1))];
}

/// Median time of @p rounds calls, in microseconds.
template<class Work>
double median(int rounds, Work work)
{
    QList<double> times;
    for (int i = 0; i < rounds; ++i)
        times.append(microseconds(work));
    return quantile(times, 0.5);
}

inline void print(const char *what, double ours, double bare, const char *unit)
{
    std::printf("%-58s %12.2f %12.2f %s  (%.2f times)\n", what, ours, bare, unit, ours / bare);
}

/// Beats every 5 ms in the event loop, and knows its longest gap.
class Heartbeat
{
public:
    Heartbeat()
    {
        m_beat.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_beat, &QTimer::timeout, [this] {
            m_longest = longest();
            m_sinceLast.start();
        });
        m_sinceLast.start();
        m_beat.start(5);
    }

    /// In milliseconds, the gap that has not ended yet included.
    double longest() const { return std::max(m_longest, static_cast<double>(m_sinceLast.nsecsElapsed()) / 1e6); }

private:
    QTimer m_beat;
    QElapsedTimer m_sinceLast;
    double m_longest = 0;
};
