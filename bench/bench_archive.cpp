// The archive tool's search to CSV on a pipe beside bare loops that write the same.

#include "Measure.h"

#include "archive/SearchCommand.h"
#include "archives/ArchiveKeys.h"
#include "archives/Tables.h"
#include "support/Fixtures.h"

#include <QCoreApplication>
#include <QFile>

#include <cstring>
#include <sqlite3.h>
#include <string>
#include <unordered_map>

using namespace tool;

namespace {

constexpr int days = 365;
constexpr int eventsOfADay = 2000;
constexpr int userCount = 5000;

QList<QStringList> someEvents()
{
    QList<QStringList> events;
    for (int i = 0; i < eventsOfADay; ++i) {
        const int second = int(qint64{i} * 86399 / eventsOfADay);
        events.append({QString::number(1 + i * 7 % (userCount + 500)), u"TX"_s, QString(QChar(u'A' + i % 4)),
                       i % 10 == 0 ? u"X"_s : u""_s, u""_s, QTime(0, 0).addSecs(second).toString(u"HH:mm:ss"_s)});
    }
    return events;
}

/// A pipe whose reader throws away what comes.
class Pipe : public Output
{
public:
    Pipe() : m_reader(::popen("cat > /dev/null", "w")) {}
    ~Pipe() override { ::pclose(m_reader); }
    Pipe(const Pipe &) = delete;
    Pipe &operator=(const Pipe &) = delete;

    Result<void> write(QByteArray &bytes, const QDeadlineTimer &) override
    {
        put(bytes.constData(), size_t(bytes.size()));
        bytes.clear();
        return {};
    }
    void put(const char *bytes, size_t count)
    {
        written += qint64(count);
        if (std::fwrite(bytes, 1, count, m_reader) != count)
            qFatal("no pipe");
    }
    qint64 written = 0;

private:
    std::FILE *m_reader;
};

sqlite3 *bareOpen(const QByteArray &path, const QByteArray &key)
{
    sqlite3 *database = nullptr;
    sqlite3_open_v2(path.constData(), &database, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_key(database, key.constData(), int(key.size()));
    sqlite3_exec(database, "PRAGMA cipher_compatibility = 3; PRAGMA cipher_page_size = 4096;", nullptr, nullptr,
                 nullptr);
    return database;
}

std::string column(sqlite3_stmt *row, int place)
{
    return reinterpret_cast<const char *>(sqlite3_column_text(row, place));
}

/// Reads each day, looks the names up and writes a line. @return bytes
qint64 bareSearch(TestFolder &test, const QByteArray &key, const QStringList &paths, const char *condition)
{
    Pipe pipe;
    std::unordered_map<std::string, std::pair<std::string, std::string>> users;
    sqlite3 *registered =
        bareOpen(QFile::encodeName(test.folder.path(QStringView(ArchiveName::Users).toString())), key);
    sqlite3_stmt *row = nullptr;
    sqlite3_prepare_v2(registered, "SELECT Codice, Tipo, Cognome, Nome FROM Utenti", -1, &row, nullptr);
    while (sqlite3_step(row) == SQLITE_ROW)
        users[column(row, 0) + ' ' + column(row, 1)] = {column(row, 2), column(row, 3)};
    sqlite3_finalize(row);
    sqlite3_close(registered);

    std::string lines = "date,time,type,code,surname,name,channel,channel_disabled,interface_disabled\r\n";
    const std::string sql = "SELECT Codice, Tipo, Canale, AbCh, Data, Ora, KorDis FROM Eventi WHERE " +
                            std::string(condition) +
                            "Ora>='00:00:00' AND Ora<='23:59:59' AND (Canale='A' OR Canale='B' OR Canale='C' OR "
                            "Canale='D') AND (Tipo='TX' OR Tipo='DKS') ORDER BY rowid";
    for (const QString &path : paths) {
        sqlite3 *day = bareOpen(QFile::encodeName(path), key);
        sqlite3_prepare_v2(day, sql.c_str(), -1, &row, nullptr);
        while (sqlite3_step(row) == SQLITE_ROW) {
            const std::string code = column(row, 0), type = column(row, 1), date = column(row, 4);
            const auto user = users.find(code + ' ' + type);
            lines += date.substr(6) + '-' + date.substr(3, 2) + '-' + date.substr(0, 2) + ',' + column(row, 5) + ',' +
                     type + ',' + code + ',' + (user == users.end() ? "" : user->second.first) + ',' +
                     (user == users.end() ? "" : user->second.second) + ',' + column(row, 2) + ',' + column(row, 3) +
                     ',' + column(row, 6) + "\r\n";
            if (lines.size() > 65536) {
                pipe.put(lines.data(), lines.size());
                lines.clear();
            }
        }
        sqlite3_finalize(row);
        sqlite3_close(day);
    }
    pipe.put(lines.data(), lines.size());
    return pipe.written;
}

qint64 ourSearch(TestFolder &test, const QString &code)
{
    ArchiveStore archives(test.folder, test.archives);
    const Texts texts;
    const FakeClock clock;
    const Site site{archives, texts, clock, [](const Message &) {}};
    ToolOptions options;
    options.query.firstDay = u"01/01/2003"_s;
    options.query.lastDay = u"31/12/2003"_s;
    options.query.code = code;
    Pipe pipe;
    SearchCommand search(site, options, {Format::Csv, ',', 0, false}, &pipe, test.disk);
    Result<bool> done = false;
    while (done && !done.value())
        done = search.step(QDeadlineTimer(10));
    return done ? pipe.written : 0;
}

void compare(const char *what, TestFolder &test, const QByteArray &key, const QStringList &paths, const QString &code)
{
    const QByteArray condition = code.isEmpty() ? QByteArray() : "Codice='" + code.toLatin1() + "' AND ";
    QList<double> ours;
    QList<double> bare;
    qint64 ourBytes = 0;
    qint64 bareBytes = 0;
    for (int round = 0; round < 5; ++round) {
        bare.append(microseconds([&] { bareBytes = bareSearch(test, key, paths, condition.constData()); }) / 1000);
        ours.append(microseconds([&] { ourBytes = ourSearch(test, code); }) / 1000);
    }
    if (ourBytes != bareBytes)
        qFatal("%lld bytes instead of %lld", ourBytes, bareBytes);
    print(what, quantile(ours, 0.5), quantile(bare, 0.5), "ms");
}

} // namespace

int main(int argumentCount, char *arguments[])
{
    const QCoreApplication application(argumentCount, arguments);
    TestFolder test;
    QList<QStringList> users;
    for (int i = 1; i <= userCount; ++i)
        users.append({QString::number(i), u"TX"_s, u"Surname %1"_s.arg(i), i % 3 == 0 ? u""_s : u"Name %1"_s.arg(i)});
    test.addUsers(users);
    QStringList paths;
    for (int day = 0; day < days; ++day) {
        const QString name = QDate(2003, 1, 1).addDays(day).toString(u"dd-MM-yyyy"_s);
        test.addEvents(name, someEvents());
        paths.append(test.folder.path(ArchiveName::events(name)));
    }
    QFile archive(paths.first());
    if (!archive.open(QIODevice::ReadOnly))
        return 1;
    ArchiveKeys keys;
    const QByteArray key = keys.rawKey(archive.read(ArchiveKeys::SaltSize));
    const qint64 before = residentPages();
    compare("a year of 730,000 events as CSV on a pipe", test, key, paths, {});
    std::printf("%-58s %12lld KiB\n", "more resident after it", (residentPages() - before) * 4);
    compare("one user's events of the year", test, key, paths, u"8"_s);
    return 0;
}
