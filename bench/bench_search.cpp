// The event search beside a bare loop over the same archives, its grid, and the live view of the day.

#include "Measure.h"

#include "archives/ArchiveKeys.h"
#include "archives/Tables.h"
#include "events/DayView.h"
#include "events/frmEventi.h"
#include "journal/Journal.h"
#include "startup/CurrentPrinter.h"
#include "support/FakeMessages.h"
#include "support/Fixtures.h"
#include "texts/DateTimeText.h"

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QToolButton>

#include <sqlite3.h>
#include <string>
#include <unordered_map>

namespace {

constexpr int days = 365;
constexpr int eventsOfADay = 2000;
constexpr int userCount = 5000;

QList<QStringList> someEvents(int count)
{
    QList<QStringList> events;
    for (int i = 0; i < count; ++i) {
        const int second = int(qint64{i} * 86399 / count);
        events.append({QString::number(1 + i * 7 % (userCount + 500)), u"TX"_s, QString(QChar(u'A' + i % 4)),
                       i % 10 == 0 ? u"X"_s : u""_s, u""_s, QTime(0, 0).addSecs(second).toString(u"HH:mm:ss"_s)});
    }
    return events;
}

sqlite3 *bareOpen(const QString &path, const QByteArray &key, const char *more)
{
    sqlite3 *database = nullptr;
    sqlite3_open(QFile::encodeName(path).constData(), &database);
    sqlite3_key(database, key.constData(), int(key.size()));
    sqlite3_exec(database, "PRAGMA cipher_compatibility = 3; PRAGMA cipher_page_size = 4096;", nullptr, nullptr,
                 nullptr);
    sqlite3_exec(database, more, nullptr, nullptr, nullptr);
    return database;
}

const char *column(sqlite3_stmt *row, int place)
{
    return reinterpret_cast<const char *>(sqlite3_column_text(row, place));
}

/// What the search does, without its rules and without yielding: read each day, look the names up, add a row.
int bareSearch(TestFolder &test, const QByteArray &key, const QStringList &names)
{
    const QString results = test.folder.path(u"Archivi/bare.zeb"_s);
    QFile::remove(results);
    QFile::copy(test.folder.path(QStringView(ArchiveName::ResultsTemplate).toString()), results);
    std::unordered_map<std::string, std::pair<std::string, std::string>> users;
    sqlite3 *registered = bareOpen(test.folder.path(QStringView(ArchiveName::Users).toString()), key, "");
    sqlite3_stmt *row = nullptr;
    sqlite3_prepare_v2(registered, "SELECT Codice, Tipo, Cognome, Nome FROM Utenti", -1, &row, nullptr);
    while (sqlite3_step(row) == SQLITE_ROW)
        users[std::string(column(row, 0)) + ' ' + column(row, 1)] = {column(row, 2), column(row, 3)};
    sqlite3_finalize(row);
    sqlite3_close(registered);

    sqlite3 *into = bareOpen(results, key, "PRAGMA synchronous = OFF; PRAGMA journal_mode = MEMORY; BEGIN EXCLUSIVE");
    sqlite3_stmt *insert = nullptr;
    sqlite3_prepare_v2(into,
                       "INSERT INTO Eventi (Cognome, Nome, Tipo, Canale, AbCh, Data, Ora, KorDis, Codice) "
                       "VALUES (?,?,?,?,?,?,?,?,?)",
                       -1, &insert, nullptr);
    int count = 0;
    for (const QString &name : names) {
        sqlite3 *day = bareOpen(name, key, "");
        sqlite3_prepare_v2(day,
                           "SELECT Codice, Tipo, Canale, AbCh, Data, Ora, KorDis FROM Eventi WHERE Ora>='00:00:00' AND "
                           "Ora<='23:59:59' AND (Canale='A' OR Canale='B' OR Canale='C' OR Canale='D') AND "
                           "(Tipo='TX' OR Tipo='DKS')",
                           -1, &row, nullptr);
        while (sqlite3_step(row) == SQLITE_ROW) {
            const auto user = users.find(std::string(column(row, 0)) + ' ' + column(row, 1));
            const bool known = user != users.end();
            sqlite3_bind_text(insert, 1, known ? user->second.first.c_str() : "", -1, SQLITE_STATIC);
            sqlite3_bind_text(insert, 2, known ? user->second.second.c_str() : "", -1, SQLITE_STATIC);
            for (int i = 1; i < 7; ++i)
                sqlite3_bind_text(insert, i + 2, column(row, i), -1, SQLITE_TRANSIENT);
            sqlite3_bind_text(insert, 9, column(row, 0), -1, SQLITE_TRANSIENT);
            sqlite3_step(insert);
            sqlite3_reset(insert);
            ++count;
        }
        sqlite3_finalize(row);
        sqlite3_close(day);
    }
    sqlite3_exec(into, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_finalize(insert);
    sqlite3_close(into);
    return count;
}

/// Takes a turn. @return whether there is more to do
bool goesOn(EventSearch &search)
{
    const Result<bool> isDone = search.step(QDeadlineTimer(20));
    return isDone && !isDone.value();
}

EventQuery between(QDate first, QDate last)
{
    return {{}, first, last, QTime(0, 0), QTime(23, 59, 59)};
}

void search(TestFolder &test, const QByteArray &key, const QStringList &names)
{
    QList<double> ours;
    QList<double> bare;
    int rows = 0;
    for (int round = 0; round < 3; ++round) {
        bare.append(microseconds([&] { rows = bareSearch(test, key, names); }) / 1000);
        UserDirectory users(test.archives, u"Archivi/AnaCon.zeb"_s);
        EventSearch search(test.archives, users);
        ours.append(microseconds([&] {
                        if (!users.open() || !search.start(between({2003, 1, 1}, {2003, 12, 31})))
                            qFatal("no search");
                        while (goesOn(search))
                            QCoreApplication::processEvents();
                    }) /
                    1000);
        if (search.results().count() != rows)
            qFatal("%lld rows instead of %d", search.results().count(), rows);
    }
    std::printf("%d rows of %d archives\n", rows, days);
    print("search with names", quantile(ours, 0.5), quantile(bare, 0.5), "ms");
}

void window(TestFolder &test)
{
    FakeMessages messages;
    Texts texts;
    FakeClock clock;
    const FakePrinters printers;
    Settings settings(test.folder, printers);
    Notices notices;
    const CurrentPrinter printer(settings, printers, notices);
    Journal journal(test.archives, clock, notices);
    frmEventi form(texts, messages, test.archives, clock, printer, journal);
    if (!form.open())
        return;
    form.show();
    form.findChild<QLineEdit *>(u"txtDataOrig"_s)->setText(u"01/01/2003"_s);
    form.findChild<QLineEdit *>(u"txtDataFine"_s)->setText(u"31/12/2003"_s);
    auto *grid = form.findChild<QTableView *>(u"dbgrdDati"_s);
    QCoreApplication::processEvents();
    const qint64 before = residentPages();
    const Heartbeat heart;
    form.findChild<QPushButton *>(u"cmdRicerca"_s)->click();
    while (grid->model()->rowCount() == 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QCoreApplication::processEvents();
    const int rows = grid->model()->rowCount();
    std::printf("%-58s %12.2f ms\n", "longest gap of a 5 ms heartbeat during the search", heart.longest());
    std::printf("%-58s %12.2f bytes a row\n", "memory, grid included", double(residentPages() - before) * 4096 / rows);
    std::printf("%-58s %12.2f ms\n", "jump to the end, painted", microseconds([&] {
                                                                     grid->scrollToBottom();
                                                                     (void)grid->grab();
                                                                 }) / 1000);
    std::printf("%-58s %12.2f ms\n", "histogram opened, painted", microseconds([&] {
                                                                      form.findChild<QToolButton *>()->click();
                                                                      QCoreApplication::processEvents();
                                                                      (void)form.grab();
                                                                  }) / 1000);
}

void missingDays(TestFolder &test)
{
    UserDirectory users(test.archives, u"Archivi/AnaCon.zeb"_s);
    EventSearch search(test.archives, users);
    const EventQuery query = between({1991, 1, 1}, {2000, 12, 31});
    const double ours = microseconds([&] {
                            if (!users.open() || !search.start(query))
                                qFatal("no search");
                            while (goesOn(search)) {
                            }
                        }) /
                        1000;
    const double bare = microseconds([&] {
                            for (QDate day(1991, 1, 1); day <= QDate(2000, 12, 31); day = day.addDays(1))
                                (void)QFile::exists(test.folder.path(ArchiveName::events(day)));
                        }) /
                        1000;
    print("ten years of missing days", ours, bare, "ms");
}

void dayView(TestFolder &test)
{
    FakeClock clock;
    const QString day = DataFile(clock.date());
    test.addEvents(day, someEvents(100'000));
    Result<Database> log = test.archives.open(ArchiveName::events(day), Database::Use::Log);
    DayView view(test.archives, clock);
    if (!view.open() || !view.users().step(QDeadlineTimer(QDeadlineTimer::Forever)) || !view.refresh(25))
        qFatal("no view");
    const auto refresh = [&view](bool news) {
        const Result<bool> changed = view.refresh(25);
        if (!changed || changed.value() != news)
            qFatal("unexpected");
    };
    const double bare = median(101, [&] {
        Result<Statement> newest = log.value().prepare(u"SELECT max(ProgEv) FROM Eventi"_s);
        (void)newest.value().step();
    });
    print("day of 100,000 events: look without news", median(101, [&] { refresh(false); }), bare, "us");
    QList<double> times;
    for (int i = 0; i < 101; ++i) {
        (void)log.value().execute("INSERT INTO Eventi (Codice, Data, Ora, Tipo) VALUES ('1', '" + day.toLatin1() +
                                  "', '23:59:59', 'TX')");
        times.append(microseconds([&] { refresh(true); }));
    }
    print("day of 100,000 events: look with one new event", quantile(times, 0.5), bare, "us");
}

} // namespace

int main(int argumentCount, char *arguments[])
{
    const QApplication application(argumentCount, arguments);
    TestFolder test;
    QList<QStringList> users;
    for (int i = 1; i <= userCount; ++i)
        users.append({QString::number(i), u"TX"_s, u"Surname %1"_s.arg(i), i % 3 == 0 ? u""_s : u"Name %1"_s.arg(i)});
    test.addUsers(users);
    QStringList names;
    for (int day = 0; day < days; ++day) {
        const QString name = QDate(2003, 1, 1).addDays(day).toString(u"dd-MM-yyyy"_s);
        test.addEvents(name, someEvents(eventsOfADay));
        names.append(test.folder.path(ArchiveName::events(name)));
    }
    QFile archive(names.first());
    if (!archive.open(QIODevice::ReadOnly))
        return 1;
    ArchiveKeys keys;
    const QByteArray key = keys.rawKey(archive.read(ArchiveKeys::SaltSize));
    search(test, key, names);
    window(test);
    missingDays(test);
    dayView(test);
    return 0;
}
