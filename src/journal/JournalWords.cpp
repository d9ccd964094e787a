#include "journal/JournalWords.h"

#include "startup/PlainText.h"
#include "texts/DateTimeText.h"
#include "texts/LanguageName.h"
#include "texts/OwnText.h"

#include <array>

namespace {

constexpr int kindsOfAGroup = 20;

/// "dd/mm/yyyy hh:mm:ss" as the clock showed it; "?" for a detail that is no moment.
QString momentWords(const QString &detail)
{
    const std::optional<Moment> moment = momentOfText(detail);
    if (!moment)
        return QStringLiteral("?");
    return dayAndTime(localTime(*moment));
}

QString withFault(OwnText text, const QStringList &arguments, const QString &code, const Texts &texts)
{
    bool isNumber = false;
    const int number = code.toInt(&isNumber);
    std::optional<Fault> fault;
    if (isNumber && number >= 0 && number <= static_cast<int>(FaultCode::NotOpen))
        fault = Fault{static_cast<FaultCode>(number), {}};
    return texts.sentence({text, arguments, fault});
}

QString causeWords(const QString &code, const Texts &texts)
{
    static constexpr std::array causes = {OwnText::CauseStart, OwnText::CauseBand, OwnText::CauseHoliday,
                                          OwnText::CauseEnd};
    const size_t cause = code.toUInt();
    return cause < causes.size() ? texts[causes.at(cause)] : code;
}

QString passwordWords(OwnText text, const QString &which, const Texts &texts)
{
    static constexpr std::array passwords = {OwnText::PasswordMain, OwnText::PasswordUsers,
                                             OwnText::PasswordDiagnostics};
    const size_t place = which.toUInt() - 1;
    return texts.sentence({text, {place < passwords.size() ? texts[passwords.at(place)] : which}, {}});
}

QString registerWords(const QString &counts, const Texts &texts)
{
    const QStringList parts = counts.split(QLatin1Char(','));
    QString words = texts[OwnText::NoteRegisterSaved];
    if (parts.size() == 3)
        words += texts[OwnText::Colon] + texts[OwnText::NoteRegisterChanges].arg(parts[0], parts[1], parts[2]);
    return words;
}

/// A setting by the menu entry that it is chosen with.
QString settingWords(const QString &key, const QString &value, const Texts &texts)
{
    struct Named {
        const char *key;
        std::variant<Text, OwnText> text;
    };
    static const std::array named = {Named{"COM", Text::MnuImpostazionePortaSeriale},
                                     Named{"LINGUA", Text::MnuLingua},
                                     Named{"CHECK", Text::MnuImpostazioniDiControlloKor},
                                     Named{"PRN", Text::MnuImpostaStampante},
                                     Named{"NUMEVOD", Text::MnuNumeroEventiOdierni},
                                     Named{"BKPFOLDER", OwnText::MnuBackup},
                                     Named{"BKPTIME", OwnText::MnuBackup}};
    QString name = key;
    for (const Named &setting : named) {
        if (key == QLatin1String(setting.key))
            name = TogliAnd(texts.sentence({setting.text, {}, {}}));
    }
    const bool isLanguage = key == QStringLiteral("LINGUA") && value.toInt() >= Texts::FirstLanguage &&
                            value.toInt() <= Texts::LastLanguage;
    const QString shown = isLanguage ? languageName(value.toInt()) : value;
    return texts[OwnText::NoteSettingChanged].arg(shown.isEmpty() ? name : name + QStringLiteral(" = ") + shown);
}

} // namespace

JournalGroup groupOf(JournalKind kind)
{
    if (kind == JournalKind::BackupFailed)
        return JournalGroup::Faults;
    const int group = static_cast<int>(kind) / kindsOfAGroup;
    return group >= 0 && group < JournalGroupCount ? static_cast<JournalGroup>(group) : JournalGroup::Service;
}

QString groupWords(JournalGroup group, const Texts &texts)
{
    static constexpr std::array groups = {OwnText::GroupService, OwnText::GroupLink, OwnText::GroupEnabling,
                                          OwnText::GroupChanges, OwnText::GroupFaults};
    static_assert(groups.size() == JournalGroupCount);
    return texts[groups.at(static_cast<size_t>(group))];
}

QString rowWords(const JournalRow &row, const Texts &texts)
{
    const auto with = [&](OwnText text) { return texts.sentence({text, {row.first}, {}}); };
    const auto withBoth = [&](OwnText text) { return texts.sentence({text, {row.first, row.second}, {}}); };
    const auto withMoment = [&](OwnText text) { return texts.sentence({text, {momentWords(row.first)}, {}}); };
    switch (row.kind) {
    case JournalKind::Started:
        return with(OwnText::NoteStarted);
    case JournalKind::Ended:
        return texts[OwnText::NoteEnded];
    case JournalKind::FoundCutOff:
        return withMoment(OwnText::NoteCutOff);
    case JournalKind::YearTurned:
        return texts[OwnText::NoteYearTurned];
    case JournalKind::ClockMoved:
        return texts.sentence({OwnText::NoteClockMoved, {momentWords(row.first), momentWords(row.second)}, {}});
    case JournalKind::Slept:
        return texts[OwnText::NoteSlept];
    case JournalKind::Woke:
        return texts[OwnText::NoteWoke];
    case JournalKind::PortOpened:
        return with(OwnText::NotePortOpened);
    case JournalKind::PortLent:
        return texts[OwnText::NotePortLent];
    case JournalKind::PortLost:
        return with(OwnText::PortLost);
    case JournalKind::PortBack:
        return with(OwnText::PortBack);
    case JournalKind::PortNotAvailable:
        return withFault(OwnText::NotePortNotAvailable, {row.first}, row.second, texts);
    case JournalKind::InterfaceAnswers:
        return texts[OwnText::NoteInterfaceAnswers];
    case JournalKind::InterfaceSilent:
        return row.first.isEmpty() ? texts[OwnText::NoteInterfaceSilent]
                                   : withMoment(OwnText::NoteInterfaceSilentSince);
    case JournalKind::InterfaceSwitchedOn:
        return texts[OwnText::NoteInterfaceSwitchedOn];
    case JournalKind::ConfigurationDiffers:
        return texts.sentence({OwnText::NoteConfigurationDiffers, {row.second}, {}});
    case JournalKind::Enabled:
        return texts.sentence({OwnText::LineReleased, {causeWords(row.first, texts)}, {}});
    case JournalKind::Disabled:
        return texts.sentence({OwnText::LineAsserted, {causeWords(row.first, texts)}, {}});
    case JournalKind::RegisterSaved:
        return registerWords(row.first, texts);
    case JournalKind::BandsSaved:
        return texts[OwnText::NoteBandsSaved];
    case JournalKind::HolidaysSaved:
        return texts[OwnText::NoteHolidaysSaved];
    case JournalKind::SettingChanged:
        return settingWords(row.first, row.second, texts);
    case JournalKind::PasswordSet:
        return passwordWords(OwnText::NotePasswordSet, row.first, texts);
    case JournalKind::PasswordRemoved:
        return passwordWords(OwnText::NotePasswordRemoved, row.first, texts);
    case JournalKind::PasswordWrong:
        return passwordWords(OwnText::NotePasswordWrong, row.first, texts);
    case JournalKind::Searched:
        return withBoth(OwnText::NoteSearched);
    case JournalKind::Printed:
        return withBoth(OwnText::NotePrinted);
    case JournalKind::Exported:
        return withBoth(OwnText::NoteExported);
    case JournalKind::BackupMade:
        return texts[OwnText::NoteBackupMade];
    case JournalKind::BackupFailed:
        return withFault(OwnText::NoteBackupFailed, {}, row.first, texts);
    case JournalKind::Restored:
        return texts[OwnText::NoteRestored];
    case JournalKind::Pruned:
        return texts.sentence(
            {OwnText::NotePruned, {DataBarre(QDate::fromString(row.first, Qt::ISODate)), row.second}, {}});
    case JournalKind::StoringFails:
        return withFault(OwnText::NoteStoringFails, {}, row.first, texts);
    case JournalKind::StoringResumes:
        return texts[OwnText::NoteStoringResumes];
    case JournalKind::EventsLost:
        return with(OwnText::EventsLost);
    }
    return texts[OwnText::NoteOfLater].arg(static_cast<int>(row.kind));
}
