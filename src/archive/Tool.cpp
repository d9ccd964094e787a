#include "archive/Tool.h"

#include "archive/BackupCommand.h"
#include "archive/CoverageCommand.h"
#include "archive/FollowCommand.h"
#include "archive/PruneCommand.h"
#include "archive/SearchCommand.h"
#include "archive/UsersCommand.h"
#include "archive/VerifyCommand.h"
#include "archives/Tables.h"
#include "platform/RegularFile.h"
#include "startup/PlainText.h"
#include "startup/Settings.h"
#include "startup/Startup.h"
#include "texts/OwnText.h"

#include <QFileInfo>

#include <cstdio>

namespace tool {

namespace {

/// An archive is open for so long at most before output is written: less than the supervisor has patience with a lock.
constexpr int turnMilliseconds = 10;
constexpr int stateMilliseconds = 200;

/// Of the program folder, when its settings tell it.
int languageOf(ProgramFolder &folder, int otherwise)
{
    const Printers printers;
    return Settings(folder, printers).storedLanguage(otherwise);
}

Protocol protocolOf(ProgramFolder &folder)
{
    const Printers printers;
    return Settings(folder, printers).storedProtocol();
}

/// Whether a result would stand beside an archive, or in its place.
bool liesAmong(const QString &archives, const QString &file)
{
    const QString path = QFileInfo(file).absoluteFilePath();
    const Result<QString> followed = linkFollowed(path);
    const QString folder = QFileInfo(QFileInfo(followed ? followed.value() : path).path()).canonicalFilePath();
    const QString real = QFileInfo(archives).canonicalFilePath();
    return folder == real || folder.startsWith(real + QLatin1Char('/'));
}

} // namespace

Tool::Tool(const ToolOptions &options, const ProgramPlaces &places, int language, const Clock &clock, QObject *parent)
    : QObject(parent),
      m_options(options),
      m_folder(places.folder, m_disk, places.installation),
      m_archives(m_folder),
      m_clock(clock),
      m_passwords(m_archives, Database::Use::Untouched),
      m_showsState(isErrorOutputTerminal())
{
    m_texts.fill(languageOf(m_folder, language));
    connect(&m_turn, &QTimer::timeout, this, &Tool::step);
    m_turn.setTimerType(Qt::CoarseTimer);
}

Tool::~Tool() = default;

void Tool::run()
{
    const QString archives = QStringView(ArchiveName::Folder).toString();
    if (!m_folder.isFolder({}))
        return refuse({OwnText::FolderMissing, {m_folder.root()}, {}});
    if (!m_folder.isFolder(archives))
        return refuse({OwnText::ArchiviMissing, {m_folder.path(archives)}, {}});
    switch (m_passwords.load()) {
    case Passwords::Fault::None:
        return openGate();
    case Passwords::Fault::Corrupt:
        return refuse({Text::FilePasswordCorrotto, {}, {}});
    case Passwords::Fault::RegisterUnusable:
    case Passwords::Fault::Unreadable:
        return refuse(registerMessage(m_folder, m_passwords.reason()));
    }
}

void Tool::openGate()
{
    if (!m_passwords.isSet(Passwords::Type::Main))
        return begin();
    m_prompt = std::make_unique<PasswordPrompt>(m_passwords, m_texts, m_options.passwordFile);
    connect(m_prompt.get(), &PasswordPrompt::passed, this, &Tool::begin);
    connect(m_prompt.get(), &PasswordPrompt::refused, this, &Tool::refuse);
    m_prompt->ask();
}

LineForm Tool::form() const
{
    LineForm form{m_options.format, m_options.separator, 0, m_options.command == CommandName::Follow};
    if (m_options.output.isEmpty() && StandardOutput::isTerminal())
        form.width = StandardOutput::columns();
    return form;
}

PruneCommand::Consent Tool::consent() const
{
    if (m_options.isSure)
        return PruneCommand::Consent::Given;
    return TerminalPassword::isThere() ? PruneCommand::Consent::ToBeAsked : PruneCommand::Consent::Impossible;
}

void Tool::begin()
{
    Result<std::unique_ptr<Command>> made = makeCommand();
    if (!made)
        return refuse({OwnText::FileNotWritten, {made.fault().subject}, made.fault()});
    m_command = std::move(made.value());
    m_sinceState.start();
    m_turn.start(0);
}

Result<std::unique_ptr<Command>> Tool::makeCommand()
{
    if (!m_options.output.isEmpty() &&
        liesAmong(m_folder.path(QStringView(ArchiveName::Folder).toString()), m_options.output))
        return Fault{FaultCode::AccessDenied, m_options.output};
    if (m_options.format != Format::Xls) {
        Result<std::unique_ptr<Output>> output = Output::open(m_options.output, m_disk);
        if (!output)
            return output.fault();
        m_output = std::move(output.value());
    }
    const Site site{m_archives, m_texts, m_clock, [this](const Message &message) { tell(message); }};
    std::unique_ptr<Command> command;
    switch (m_options.command) {
    case CommandName::Search:
        command = std::make_unique<SearchCommand>(site, m_options, form(), m_output.get(), m_disk);
        break;
    case CommandName::Follow:
        command = std::make_unique<FollowCommand>(site, cursorOf(m_options.cursor), form(), *m_output);
        break;
    case CommandName::Users:
        command = std::make_unique<UsersCommand>(site, form(), protocolOf(m_folder), *m_output);
        break;
    case CommandName::Coverage:
        command = std::make_unique<CoverageCommand>(site, rangeDay(m_options.query.firstDay, End::First),
                                                    rangeDay(m_options.query.lastDay, End::Last), form(), *m_output);
        break;
    case CommandName::Verify:
        command = std::make_unique<VerifyCommand>(site, m_options.isQuick, *m_output);
        break;
    case CommandName::Backup:
        command = std::make_unique<BackupCommand>(site, m_options.target);
        break;
    case CommandName::Prune:
        command = std::make_unique<PruneCommand>(site, m_options.before, consent(), *m_output);
        break;
    }
    return command;
}

void Tool::step()
{
    const Result<bool> stepped = m_command->step(QDeadlineTimer(turnMilliseconds));
    // The reader has gone, and has all that he wanted.
    if (!stepped && stepped.fault().code == FaultCode::NotOpen)
        return end(Done);
    if (!stepped)
        return refuse(m_command->words(stepped.fault()));
    if (stepped.value())
        return end(m_command->hasFaults() ? DoneWithFaults : Done);
    m_turn.setInterval(m_command->pause());
    if (m_showsState && m_sinceState.elapsed() > stateMilliseconds) {
        m_sinceState.start();
        showState(m_command->state());
    }
}

void Tool::stop()
{
    end(m_command && m_command->isEndless() ? Done : NotDone);
}

void Tool::refuse(const Message &why)
{
    tell(why);
    end(NotDone);
}

void Tool::end(ExitCode code)
{
    m_turn.stop();
    if (m_prompt)
        m_prompt->end();
    showState({});
    Q_EMIT ended(code);
}

void Tool::tell(const Message &message)
{
    showState({});
    std::fprintf(stderr, "kor-archive: %s\n", printable(m_texts.sentence(message)).toUtf8().constData());
}

/// Writes over the state before. On anything but a screen nothing is to be seen of it.
void Tool::showState(const QString &state)
{
    if (!m_showsState || (state.isEmpty() && m_stateLength == 0))
        return;
    std::fprintf(stderr, "\r%s", state.leftJustified(m_stateLength).toUtf8().constData());
    m_stateLength = state.size();
    if (state.isEmpty())
        std::fputc('\r', stderr);
}

} // namespace tool
