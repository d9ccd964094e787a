#pragma once

#include "archive/Command.h"
#include "archive/Output.h"
#include "archive/PruneCommand.h"
#include "archive/ToolOptions.h"
#include "prefs/PasswordPrompt.h"
#include "startup/ProgramPlaces.h"

#include <QElapsedTimer>
#include <QTimer>

namespace tool {

/// One run of the tool: the gate, then the command in turns.
class Tool : public QObject
{
    Q_OBJECT

public:
    enum ExitCode {
        Done = 0,
        DoneWithFaults = 1,
        NotDone = 2,
    };

    /// @param clock  must outlive this object; @param language  of the system
    Tool(const ToolOptions &options, const ProgramPlaces &places, int language, const Clock &clock,
         QObject *parent = nullptr);
    ~Tool() override;

    /// Begins; ended() follows.
    void run();
    /// Ends early, as the user or the system wants it.
    void stop();

Q_SIGNALS:
    void ended(int exitCode);

private:
    void openGate();
    void begin();
    Result<std::unique_ptr<Command>> makeCommand();
    void step();
    void refuse(const Message &why);
    void end(ExitCode code);
    void tell(const Message &message);
    void showState(const QString &state);
    LineForm form() const;
    PruneCommand::Consent consent() const;

    const ToolOptions m_options;
    Disk m_disk;
    ProgramFolder m_folder;
    ArchiveStore m_archives;
    Texts m_texts;
    const Clock &m_clock;
    Passwords m_passwords;
    std::unique_ptr<PasswordPrompt> m_prompt;
    std::unique_ptr<Output> m_output;
    std::unique_ptr<Command> m_command;
    QTimer m_turn;
    QElapsedTimer m_sinceState;
    qsizetype m_stateLength = 0;
    const bool m_showsState;
};

} // namespace tool
