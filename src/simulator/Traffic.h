#pragma once

#include "simulator/Pace.h"
#include "simulator/SimulatedInterface.h"

#include <optional>

namespace simulator {

/// Makes records by itself: a burst, then a steady rate. It goes on only while the interface is heard by a program, so
/// that one which comes later is not flooded with what was meant for nobody.
class Traffic : public QObject
{
    Q_OBJECT

public:
    struct Plan {
        int burst = 0;               ///< records at once, to begin with
        double perSecond = 0;        ///< 0 = nothing after the burst
        std::optional<qint64> count; ///< records after the burst; nothing = without end
    };

    /// @param interface, clock  must outlive this object
    Traffic(const Plan &plan, SimulatedInterface &interface, const Clock &clock, QObject *parent = nullptr);

    bool isFinished() const;

private:
    void tick();

    Plan m_plan;
    SimulatedInterface &m_interface;
    const Clock &m_clock;
    Pace m_pace;
    QTimer m_timer;
};

} // namespace simulator
