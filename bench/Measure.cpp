#include "Measure.h"

#include <algorithm>
#include <cstdio>

double quantile(QList<double> values, double share)
{
    std::sort(values.begin(), values.end());
    return values[static_cast<qsizetype>(share * static_cast<double>(values.size() - 1))];
}

void print(const char *what, double ours, double bare, const char *unit)
{
    std::printf("%-58s %12.2f %12.2f %s  (%.2f times)\n", what, ours, bare, unit, ours / bare);
}

Heartbeat::Heartbeat()
{
    m_beat.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_beat, &QTimer::timeout, [this] {
        m_longest = longest();
        m_sinceLast.start();
    });
    m_sinceLast.start();
    m_beat.start(5);
}

double Heartbeat::longest() const
{
    return std::max(m_longest, static_cast<double>(m_sinceLast.nsecsElapsed()) / 1e6);
}
