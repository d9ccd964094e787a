#include "mainwindow/Demonstration.h"

#include "archives/ArchiveStore.h"
#include "archives/RecordSet.h"
#include "archives/Tables.h"
#include "archives/Templates.h"
#include "platform/Termination.h"

#include <QDir>
#include <QFileInfo>

#include <array>

namespace {

struct DemoUser {
    const char *code;
    const char *type;
    const char *surname;
    const char *name;
};

constexpr std::array demoUsers = {
    DemoUser{"12345", "TX", "Bianchi", "Anna"},    DemoUser{"12346", "TX", "Dupré", "Léa"},
    DemoUser{"1048577", "TX", "Keller", "Jürgen"}, DemoUser{"16777216", "TX", "O'Hara", "Sean"},
    DemoUser{"777", "DKS", "Rossi", "Mario"},      DemoUser{"4711", "DKS", "Weiß", "Greta"},
};

/// Codes that the simulated interface reads: every user's, and two that nobody has.
QString demoCodes()
{
    QStringList codes{QStringLiteral("tx:99999"), QStringLiteral("dks:31415")};
    for (const DemoUser &user : demoUsers)
        codes.append(QString::fromLatin1(user.type).toLower() + QLatin1Char(':') + QString::fromLatin1(user.code));
    return codes.join(QLatin1Char(','));
}

constexpr int startMilliseconds = 5000;

} // namespace

Demonstration::~Demonstration()
{
    m_interface.terminate();
    if (m_interface.state() != QProcess::NotRunning && !m_interface.waitForFinished(startMilliseconds))
        m_interface.kill();
}

Result<void> Demonstration::start()
{
    if (!m_folder.isValid())
        return Fault{FaultCode::AccessDenied, QDir::tempPath()};
    if (Result<void> laid = layFolder(folder(), m_installation); !laid)
        return laid;
    return startInterface();
}

Result<void> Demonstration::layFolder(const QString &path, const QString &installation)
{
    Disk disk;
    for (const char *name : {"/Archivi", "/Porte"}) {
        if (Result<void> made = disk.makeFolder(path + QLatin1String(name)); !made)
            return made;
    }
    ProgramFolder programFolder(path, disk, installation);
    if (Result<void> laid = layTemplates(programFolder); !laid)
        return laid;
    ArchiveStore archives(programFolder);
    if (Result<void> copied = archives.copy(ArchiveName::UsersTemplate, ArchiveName::Users); !copied)
        return copied;
    Result<Database> database = archives.open(ArchiveName::Users, Database::Use::ThrowAway);
    if (!database)
        return database.fault();
    Result<RecordSet> users = RecordSet::open(database.value(), QStringLiteral("SELECT * FROM Utenti ORDER BY Codice"),
                                              RecordSet::Kind::Dynaset);
    if (!users)
        return users.fault();
    for (const DemoUser &user : demoUsers) {
        Result<void> added = users.value().addNew({{QStringLiteral("Codice"), QString::fromUtf8(user.code)},
                                                   {QStringLiteral("Tipo"), QString::fromUtf8(user.type)},
                                                   {QStringLiteral("Cognome"), QString::fromUtf8(user.surname)},
                                                   {QStringLiteral("Nome"), QString::fromUtf8(user.name)}});
        if (!added)
            return added;
    }
    return {};
}

Result<void> Demonstration::startInterface()
{
    const QString program = m_programs + QStringLiteral("/kor-simulator");
    const QString link = folder() + QStringLiteral("/Porte/COM%1").arg(Port);
    makeHelper(m_interface);
    m_interface.setStandardInputFile(QProcess::nullDevice());
    m_interface.setProcessChannelMode(QProcess::SeparateChannels);
    m_interface.start(program, {QStringLiteral("--link"), link, QStringLiteral("--codes"), demoCodes(),
                                QStringLiteral("--rate"), QStringLiteral("0.7")});
    // Its first line tells that the port can be opened.
    if (!m_interface.waitForReadyRead(startMilliseconds) || !QFileInfo(link).isSymLink())
        return Fault{FaultCode::NotFound, program};
    m_interface.setStandardOutputFile(QProcess::nullDevice());
    return {};
}
