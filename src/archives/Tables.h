#pragma once

#include <QByteArray>
#include <QDate>
#include <QString>
#include <QStringView>

/// Names of the archive files, below the program folder.
namespace ArchiveName {

inline constexpr auto Folder = u"Archivi";
inline constexpr auto BackupFolder = u"Archivi/Backup";
inline constexpr auto Users = u"Archivi/Anagrafico.zeb";
inline constexpr auto UsersCopy = u"Archivi/Anatmp.$$$";
inline constexpr auto UsersFetched = u"Archivi/Anarip.$$$";
inline constexpr auto UsersExported = u"Archivi/Anaesp.$$$";
inline constexpr auto UsersBackup = u"Archivi/Backup/AnaBack.zeb";
inline constexpr auto UsersTemplate = u"Archivi/Anagraficoorg.zeb";
inline constexpr auto UsersSnapshot = u"Archivi/Anagrafica.evn";
inline constexpr auto SearchUsers = u"Archivi/AnaCon.zeb";
inline constexpr auto ViewUsers = u"Archivi/AnaCon2.zeb";
inline constexpr auto PrintUsers = u"Archivi/AnaPrn.zeb";
inline constexpr auto Bands = u"Archivi/Fascie.zeb";
inline constexpr auto BandsTemplate = u"Archivi/Fascieorg.zeb";
inline constexpr auto Holidays = u"Archivi/Ferie.zeb";
inline constexpr auto HolidaysTemplate = u"Archivi/Ferieorg.zeb";
inline constexpr auto EventsTemplate = u"Archivi/Eventiorg.zeb";
inline constexpr auto Waiting = u"Archivi/Attesa.zeb";
inline constexpr auto Results = u"Archivi/Eventitmp.$$$";
inline constexpr auto ResultsTemplate = u"Archivi/Eventitmp.zeb";

/// The archive of one day.
QString events(QDate day);
/// The service journal of one year.
QString journal(int year);

} // namespace ArchiveName

/// Statements that lay out the tables of a template.
namespace TableLayout {

extern const char *const Users;    ///< Utenti, Password
extern const char *const Bands;    ///< Fascie
extern const char *const Holidays; ///< Giorni
extern const char *const Events;   ///< Eventi of a day, with the index that its readers sort by
extern const char *const Waiting;  ///< Attesa, events that cannot go to their day yet; no fault when it is there
extern const char *const Reunited; ///< Riuniti, the rows of several files of a day
extern const char *const Journal;  ///< Giornale and Vita of a year; no fault when they are there
extern const char *const Results;  ///< Eventi of search results, which keep the order they were found in

} // namespace TableLayout
