#pragma once

#include "simulator/SimulatedInterface.h"

#include <QQueue>

namespace simulator {

/// Commands of one source, carried out one after the other.
///
/// Commands that end sending let what was sent before get through first, unless nobody takes it: off lets it leave,
/// unplug and quit let it be read.
class Script : public QObject
{
    Q_OBJECT

public:
    /// @param interface, clock  must outlive this object
    Script(SimulatedInterface &interface, const Clock &clock, QObject *parent = nullptr);

    /// Commands that send keep a steady rate. @param perSecond  above 0
    void setPace(double perSecond);
    /// Begins again after its last command.
    void setRepeating(bool repeating) { m_repeating = repeating; }
    /// Sending and waiting are put off while the line could be heard but no program has it open.
    void setNeedsProgram(bool needs) { m_needsProgram = needs; }

    /// @p command is carried out now, if nothing stands before it.
    void append(const Command &command);
    /// Carries out @p commands from the next turn of the event loop on.
    void start(const QList<Command> &commands);
    bool isFinished() const { return m_commands.isEmpty() && !m_timer.isActive(); }

private:
    void step();
    bool mustWait(const Command &command);
    bool mayEnd(const Command &command);

    SimulatedInterface &m_interface;
    const Clock &m_clock;
    QQueue<Command> m_commands;
    std::optional<Pace> m_pace;
    std::optional<qint64> m_deadline; ///< until then a command that ends sending waits for a reader
    bool m_repeating = false;
    bool m_needsProgram = false;
    qsizetype m_done = 0;  ///< commands of this round
    qsizetype m_round = 0; ///< commands of a round
    QTimer m_timer;
};

} // namespace simulator
