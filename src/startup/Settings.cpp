#include "startup/Settings.h"

#include "platform/RegularFile.h"
#include "platform/Windows1252.h"
#include "startup/Numbers.h"
#include "texts/LanguageName.h"
#include "texts/OwnText.h"

#include <limits>

namespace {

constexpr qsizetype longestFile = qsizetype{64} * 1024;
// What the first start writes, the language and the printer aside.
constexpr int initialPort = 0;
constexpr int initialRows = 25;
constexpr int initialMinutes = 60;

QString temporaryName()
{
    return QStringLiteral("Setup.tmp");
}

QByteArray mark(const QString &key)
{
    return Windows1252::encode(key) + '=';
}

} // namespace

Settings::Settings(ProgramFolder &folder, const Printers &printers) : m_folder(folder), m_printers(printers)
{
}

QString Settings::fileName()
{
    return QStringLiteral("Impost.stp");
}

bool Settings::fileExists() const
{
    return m_folder.exists(fileName());
}

Result<QByteArrayList> Settings::lines() const
{
    const Result<QByteArray> read = readFile(m_folder.path(fileName()), longestFile);
    if (!read && read.fault().code == FaultCode::NotFound)
        return QByteArrayList();
    if (!read)
        return read.fault();
    QByteArray content = read.value();
    // An editor of another system may have left its own line ends.
    content.replace("\r\n", "\n").replace('\r', '\n');
    if (content.endsWith('\n'))
        content.chop(1);
    return content.isEmpty() ? QByteArrayList() : content.split('\n');
}

QString Settings::LeggiImpostazione(const QString &key) const
{
    return entry(key).value_or(QString());
}

/// The same, nothing when no line has the key.
std::optional<QString> Settings::entry(const QString &key) const
{
    const Result<QByteArrayList> read = lines();
    if (!read)
        return std::nullopt;
    for (const QByteArray &line : read.value()) {
        if (line.contains(mark(key)))
            return Windows1252::decode(line.mid(line.indexOf('=') + 1)).trimmed();
    }
    return std::nullopt;
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
    bool isOther = false;
    for (const QByteArray &old : read.value()) {
        const bool matches = old.contains(mark(key));
        content += (matches ? entry : old) + "\r\n";
        found = found || matches;
        isOther = isOther || (matches && old != entry);
    }
    if (!found)
        content += entry + "\r\n";
    Result<void> written = m_folder.disk().replaceContent(m_folder.path(fileName()), content, temporaryName());
    if (written && (isOther || !found))
        Q_EMIT changed(key, line.mid(line.indexOf(QLatin1Char('=')) + 1));
    return written;
}

/// All entries with the values in force: for a file that somebody has removed meanwhile.
QByteArrayList Settings::currentLines() const
{
    QByteArrayList all;
    for (const auto &[key, value] :
         {std::pair("COM", PortaCom), std::pair("LINGUA", Lingua), std::pair("NUMEVOD", NumEvOd),
          std::pair("CHECK", MinCheck), std::pair("PRN", IndStampante),
          std::pair("PRTC", static_cast<int>(CodProtocollo))})
        all.append(QByteArray(key) + '=' + QByteArray::number(value));
    return all;
}

Result<void> Settings::CreaImpostazioni(int language)
{
    QByteArray content;
    for (const auto &[key, value] :
         {std::pair("COM", initialPort), std::pair("LINGUA", language), std::pair("NUMEVOD", initialRows),
          std::pair("CHECK", initialMinutes), std::pair("PRN", IndiceStampanteDefault())})
        content += QByteArray(key) + '=' + QByteArray::number(value) + "\r\n";
    return m_folder.disk().replaceContent(m_folder.path(fileName()), content, temporaryName());
}

Result<void> Settings::save(const QString &key, int value)
{
    return ScriviImpostazione(key, key + QLatin1Char('=') + QString::number(value));
}

/// The leading number of an entry; @p initial, with a notice, when no line has it.
int Settings::lenient(const QString &key, int initial, Notices &notices) const
{
    if (const std::optional<QString> value = entry(key))
        return toSixteenBits(leadingNumber(*value));
    notices.post(Icon::Exclamation, {OwnText::SettingMissing, {key, QString::number(initial)}, {}});
    return initial;
}

Result<void> Settings::read(int systemLanguage, Notices &notices)
{
    if (const Result<QByteArrayList> readable = lines(); !readable)
        return readable.fault();

    const auto strict = [this, &notices](const QString &key, int lowest, int highest, int initial,
                                         const QString &inWords) {
        const std::optional<QString> value = entry(key);
        const std::optional<int> number = value ? wholeNumber(*value) : std::nullopt;
        if (number && *number >= lowest && *number <= highest)
            return *number;
        notices.post(Icon::Exclamation,
                     {value ? OwnText::SettingUnusable : OwnText::SettingMissing, {key, inWords}, {}});
        return initial;
    };
    PortaCom = strict(QStringLiteral("COM"), std::numeric_limits<int>::min(), std::numeric_limits<int>::max(),
                      initialPort, QString::number(initialPort));
    Lingua = strict(QStringLiteral("LINGUA"), Texts::FirstLanguage, Texts::LastLanguage, systemLanguage,
                    languageName(systemLanguage));
    NumEvOd = lenient(QStringLiteral("NUMEVOD"), initialRows, notices);
    MinCheck = lenient(QStringLiteral("CHECK"), initialMinutes, notices);
    // The print system is asked only when there is need to.
    const QString printer = QStringLiteral("PRN");
    IndStampante = lenient(printer, entry(printer) ? 0 : IndiceStampanteDefault(), notices);
    CodProtocollo = storedProtocol();
    return {};
}

int Settings::storedLanguage(int otherwise) const
{
    const int language = wholeNumber(LeggiImpostazione(QStringLiteral("LINGUA"))).value_or(0);
    return language >= Texts::FirstLanguage && language <= Texts::LastLanguage ? language : otherwise;
}

Protocol Settings::storedProtocol() const
{
    return static_cast<Protocol>(toSixteenBits(leadingNumber(LeggiImpostazione(QStringLiteral("PRTC")))));
}
