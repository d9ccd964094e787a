#include "archives/Tables.h"

#include "texts/DateTimeText.h"

QString ArchiveName::events(QDate day)
{
    return QStringLiteral("Archivi/Eventi_") + DataFile(day) + QStringLiteral(".zeb");
}

QString ArchiveName::journal(int year)
{
    return QStringLiteral("Archivi/Giornale_%1.zeb").arg(year, 4, 10, QLatin1Char('0'));
}

// Every text column has a value from the start: a field that nobody wrote compares and prints as empty text.
const char *const TableLayout::Users = R"(
CREATE TABLE Utenti (
    Codice TEXT NOT NULL DEFAULT '', Tipo TEXT NOT NULL DEFAULT '', Cognome TEXT NOT NULL DEFAULT '',
    Nome TEXT NOT NULL DEFAULT '', Note TEXT NOT NULL DEFAULT '', Indir TEXT NOT NULL DEFAULT '',
    CodTronc TEXT NOT NULL DEFAULT '');
CREATE TABLE Password (
    PassProg TEXT NOT NULL DEFAULT '', PassUte TEXT NOT NULL DEFAULT '', PassUtility TEXT NOT NULL DEFAULT '');
)";

const char *const TableLayout::Bands = R"(
CREATE TABLE Fascie (
    Lunedi TEXT NOT NULL DEFAULT '', Martedi TEXT NOT NULL DEFAULT '', Mercoledi TEXT NOT NULL DEFAULT '',
    Giovedi TEXT NOT NULL DEFAULT '', Venerdi TEXT NOT NULL DEFAULT '', Sabato TEXT NOT NULL DEFAULT '',
    Domenica TEXT NOT NULL DEFAULT '', Da TEXT NOT NULL DEFAULT '', A TEXT NOT NULL DEFAULT '');
)";

const char *const TableLayout::Holidays = R"(
CREATE TABLE Giorni (
    DalGiorno TEXT NOT NULL DEFAULT '', AlGiorno TEXT NOT NULL DEFAULT '', DalGiornoOrd TEXT NOT NULL DEFAULT '',
    AlGiornoOrd TEXT NOT NULL DEFAULT '');
)";

#define KOR_EVENTS_TABLE                                                                                               \
    "CREATE TABLE Eventi ("                                                                                            \
    "ProgEv INTEGER PRIMARY KEY, Codice TEXT NOT NULL DEFAULT '', Data TEXT NOT NULL DEFAULT '',"                      \
    "Ora TEXT NOT NULL DEFAULT '', Tipo TEXT NOT NULL DEFAULT '', Canale TEXT NOT NULL DEFAULT '',"                    \
    "AbCh TEXT NOT NULL DEFAULT '', KorDis TEXT NOT NULL DEFAULT '', DataOrd TEXT NOT NULL DEFAULT '',"                \
    "Cognome TEXT NOT NULL DEFAULT '', Nome TEXT NOT NULL DEFAULT '');"

const char *const TableLayout::Events = KOR_EVENTS_TABLE "CREATE INDEX EventiOrdine ON Eventi (Data, Ora, ProgEv);";
const char *const TableLayout::Waiting = R"(
CREATE TABLE IF NOT EXISTS Attesa (
    Num INTEGER PRIMARY KEY, Giorno TEXT NOT NULL DEFAULT '', Stato INTEGER NOT NULL DEFAULT 0,
    Copia INTEGER NOT NULL DEFAULT 0, Posto INTEGER NOT NULL DEFAULT 0,
    Codice TEXT NOT NULL DEFAULT '', Data TEXT NOT NULL DEFAULT '', Ora TEXT NOT NULL DEFAULT '',
    Tipo TEXT NOT NULL DEFAULT '', Canale TEXT NOT NULL DEFAULT '', AbCh TEXT NOT NULL DEFAULT '',
    KorDis TEXT NOT NULL DEFAULT '', DataOrd TEXT NOT NULL DEFAULT '');
)";
const char *const TableLayout::Reunited = R"(
CREATE TABLE Riuniti (
    Codice TEXT, Data TEXT, Ora TEXT, Tipo TEXT, Canale TEXT, AbCh TEXT, KorDis TEXT, DataOrd TEXT,
    Num INTEGER, Origine INTEGER, Visto INTEGER);
CREATE INDEX RiunitiUguali ON Riuniti (DataOrd, Ora, Codice, Data, Tipo, Canale, AbCh, KorDis, Visto);
CREATE INDEX RiunitiNumeri ON Riuniti (Num);
)";
const char *const TableLayout::Journal = R"(
CREATE TABLE IF NOT EXISTS Giornale (
    Num INTEGER PRIMARY KEY, Data TEXT NOT NULL DEFAULT '', Ora TEXT NOT NULL DEFAULT '',
    Scarto INTEGER NOT NULL DEFAULT 0, Tipo INTEGER NOT NULL DEFAULT 0,
    Dato1 TEXT NOT NULL DEFAULT '', Dato2 TEXT NOT NULL DEFAULT '');
CREATE TABLE IF NOT EXISTS Vita (
    Num INTEGER PRIMARY KEY, Data TEXT NOT NULL DEFAULT '', Ora TEXT NOT NULL DEFAULT '',
    Scarto INTEGER NOT NULL DEFAULT 0);
)";
const char *const TableLayout::Results = KOR_EVENTS_TABLE;
