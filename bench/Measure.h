#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QTimer>

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
double quantile(QList<double> values, double share);

/// Median time of @p rounds calls, in microseconds.
template<class Work>
double median(int rounds, Work work)
{
    QList<double> times;
    for (int i = 0; i < rounds; ++i)
        times.append(microseconds(work));
    return quantile(times, 0.5);
}

void print(const char *what, double ours, double bare, const char *unit);

/// Beats every 5 ms in the event loop, and knows its longest gap.
class Heartbeat
{
public:
    Heartbeat();

    /// In milliseconds, the gap that has not ended yet included.
    double longest() const;

private:
    QTimer m_beat;
    QElapsedTimer m_sinceLast;
    double m_longest = 0;
};
