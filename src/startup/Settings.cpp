#include "startup/Settings.h"

#include "platform/Windows1252.h"
#include "startup/Numbers.h"

#include <QFile>

namespace {

QString fileName()
{
    return QStringLiteral("Impost.stp");
}

QByteArray mark(const QString &key)
{
    return Windows1252::encode(key) + '=';
}

} // namespace

Settings::Settings(ProgramFolder &folder, const Printers &printers) : m_folder(folder), m_printers(printers)
{
}

bool Settings::fileExists() const
{
    return m_folder.exists(fileName());
}

Result<QByteArrayList> Settings::lines() const
{
    QFile file(m_folder.path(fileName()));
    if (!file.exists())
        return QByteArrayList();
    if (!file.open(QIODevice::ReadOnly))
        return Fault{FaultCode::AccessDenied, file.fileName()};
    QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return Fault{FaultCode::InputOutput, file.fileName()};
    // An editor of another system may have left its own line ends.
    content.replace("\r\n", "\n").replace('\r', '\n');
    if (content.endsWith('\n'))
        content.chop(1);
    return content.isEmpty() ? QByteArrayList() : content.split('\n');
}

QString Settings::LeggiImpostazione(const QString &key) const
{
    const Result<QByteArrayList> read = lines();
    if (!read)
        return {};
    for (const QByteArray &line : read.value()) {
        if (line.contains(mark(key)))
            return Windows1252::decode(line.mid(line.indexOf('=') + 1)).trimmed();
    }
    return {};
}

Result<void> Settings::ScriviImpostazione(const QString &key, const QString &line)
{
    Result<QByteArrayList> read = lines();
    if (!read)
        return read.fault();
    if (!fileExists())
        read = currentLines();
    const QByteArray entry = Windows1252::encode(line);
    QByteArray content;
    bool found = false;
    for (const QByteArray &old : read.value()) {
        const bool matches = old.contains(mark(key));
        content += (matches ? entry : old) + "\r\n";
        found = found || matches;
    }
    if (!found)
        content += entry + "\r\n";
    return m_folder.disk().replaceContent(m_folder.path(fileName()), content,
                                          m_folder.path(QStringLiteral("Setup.tmp")));
}

/// All entries with the values in force: for a file that somebody has removed meanwhile.
QByteArrayList Settings::currentLines() const
{
    QByteArrayList all;
    for (const auto &[key, value] :
         {std::pair("COM", PortaCom), std::pair("LINGUA", Lingua), std::pair("NUMEVOD", NumEvOd),
          std::pair("CHECK", MinCheck), std::pair("PRN", IndStampante), std::pair("PRTC", CodProtocollo)})
        all.append(QByteArray(key) + '=' + QByteArray::number(value));
    return all;
}

Result<void> Settings::CreaImpostazioni(int language)
{
    const QByteArray content = "COM=0\r\nLINGUA=" + QByteArray::number(language) +
                               "\r\nNUMEVOD=25\r\nCHECK=60\r\nPRN=" + QByteArray::number(IndiceStampanteDefault()) +
                               "\r\n";
    return m_folder.disk().replaceContent(m_folder.path(fileName()), content,
                                          m_folder.path(QStringLiteral("Setup.tmp")));
}

Result<void> Settings::save(const QString &key, int value)
{
    return ScriviImpostazione(key, key + QLatin1Char('=') + QString::number(value));
}

int Settings::lenient(const QString &key) const
{
    return toSixteenBits(leadingNumber(LeggiImpostazione(key)));
}

Result<void> Settings::read(int systemLanguage, Notices &notices)
{
    if (const Result<QByteArrayList> readable = lines(); !readable)
        return readable.fault();

    const auto unusable = [&notices](const QString &key, int instead) {
        notices.post(Icon::Exclamation, {OwnText::SettingUnusable, {key, QString::number(instead)}, {}});
        return instead;
    };
    const QString com = QStringLiteral("COM");
    const std::optional<int> port = wholeNumber(LeggiImpostazione(com));
    PortaCom = port ? *port : unusable(com, 0);

    const QString lingua = QStringLiteral("LINGUA");
    const std::optional<int> language = wholeNumber(LeggiImpostazione(lingua));
    const bool known = language && *language >= Texts::FirstLanguage && *language <= Texts::LastLanguage;
    Lingua = known ? *language : unusable(lingua, systemLanguage);

    NumEvOd = lenient(QStringLiteral("NUMEVOD"));
    MinCheck = lenient(QStringLiteral("CHECK"));
    IndStampante = lenient(QStringLiteral("PRN"));
    CodProtocollo = lenient(QStringLiteral("PRTC"));
    return {};
}
