#include "archives/Tables.h"
#include "backup/Backup.h"
#include "journal/Journal.h"
#include "link/EventLog.h"
#include "support/Fixtures.h"
#include "support/RecordingVfs.h"

#include <QDir>
#include <QElapsedTimer>
#include <QRegularExpression>

#include <csignal>
#include <fcntl.h>
#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const QString oldDay = u"Archivi/Eventi_01-03-2004.zeb"_s;
const QString otherDay = u"Archivi/Eventi_02-03-2004.zeb"_s;
const QString all = u"SELECT ProgEv, Codice FROM Eventi"_s;

/// A folder with some days and a place for its copy.
struct Site : TestFolder {
    Site()
    {
        addUsers({{u"1"_s, u"TX"_s, u"Rossi"_s, u"Anna"_s}});
        addEvents(u"01-03-2004"_s, {{u"1"_s, u"TX"_s, u"A"_s, u""_s, u""_s, u"08:00:00"_s}});
        addEvents(u"02-03-2004"_s, {{u"2"_s, u"TX"_s, u"A"_s, u""_s, u""_s, u"08:00:00"_s}});
        write(u"Impost.stp"_s, "COM=7\r\n");
        QDir(directory.path()).mkdir(u"Porte"_s);
        QFile::link(u"/dev/null"_s, directory.filePath(u"Porte/COM7"_s));
    }

    /// @param each  called before each turn
    Result<int> backUp(const std::function<void()> &each = [] {})
    {
        Backup backup(archives, target.path());
        if (const Result<void> begun = backup.begin(); !begun)
            return begun.fault();
        for (;;) {
            each();
            const Result<bool> done = backup.step(QDeadlineTimer(0));
            if (!done)
                return done.fault();
            if (done.value())
                return backup.copied();
        }
    }
    QByteArray copyOf(const QString &name) const
    {
        QFile file(target.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : "-";
    }
    QStringList rowsOfCopy(const QString &name, const QString &statement)
    {
        ProgramFolder copied(target.path(), disk);
        ArchiveStore store(copied, archives);
        QStringList found;
        Result<Database> database = store.open(name, Database::Use::Safe);
        if (!database || !database.value().readThrough())
            return {u"FAULT"_s};
        if (!database.value().each(statement, {}, [&](const Statement &row) { found.append(row.text(1)); }))
            return {u"FAULT"_s};
        return found;
    }

    QTemporaryDir target;
};

/// What wait() tells of a process that does this and nothing else.
template<class Work>
int inChild(Work work)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(work());
    int status = -1;
    return ::waitpid(child, &status, 0) == child ? status : -1;
}

/// Makes root obey the rights of files like anybody else.
bool giveUpCapabilities()
{
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct none[2] = {};
    return ::syscall(SYS_capset, &header, none) == 0;
}

} // namespace

class TestBackup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void copiesWhatDiffersAndDeletesNothing()
    {
        Site site;
        QVERIFY(site.backUp().ok());
        for (const QString &name : {oldDay, otherDay, u"Archivi/Anagrafico.zeb"_s, u"Impost.stp"_s})
            QCOMPARE(site.copyOf(name), site.read(name));
        QCOMPARE(QFile::symLinkTarget(site.target.filePath(u"Porte/COM7"_s)), u"/dev/null"_s);
        // What has just been made may change within the grain of the clock: it is copied once more.
        const QDateTime before = QDateTime::currentDateTime().addDays(-1);
        for (const QString &name : site.files(u"Archivi"_s) + QStringList{u"../Impost.stp"_s}) {
            QFile file(site.directory.filePath(u"Archivi/"_s + name));
            QVERIFY(file.open(QIODevice::ReadWrite) && file.setFileTime(before, QFile::FileModificationTime));
        }
        QVERIFY(site.backUp().value() > 5);
        QCOMPARE(site.backUp().value(), 0);
        site.addEvents(u"02-03-2004"_s, {{u"3"_s, u"TX"_s, u"A"_s, u""_s, u""_s, u"09:00:00"_s}});
        QVERIFY(QFile::remove(site.directory.filePath(oldDay)));
        QCOMPARE(site.backUp().value(), 1);
        QCOMPARE(site.rowsOfCopy(otherDay, all), QStringList({u"2"_s, u"3"_s}));
        QCOMPARE(site.rowsOfCopy(oldDay, all), QStringList{u"1"_s});
    }

    void dayThatIsWrittenIsCopiedAsItWasAtOneMoment()
    {
        Site site;
        FakeClock clock;
        Notices notices;
        EventLog log(site.archives, clock, notices);
        log.open();
        int stored = 0;
        const auto store = [&] {
            EventRecord record;
            record.code = QString::number(++stored);
            log.append(makeEvent(record, clock.moment));
        };
        for (int i = 0; i < 300; ++i)
            store();
        Journal journal(site.archives, clock, notices);
        journal.begin({});
        const auto noteAndStore = [&] {
            store();
            journal.note(JournalKind::EventsLost, QString::number(stored));
            journal.wake();
        };
        QVERIFY(site.backUp(noteAndStore).ok());
        const QStringList noted = site.rowsOfCopy(ArchiveName::journal(2004), u"SELECT Num, Dato1 FROM Giornale"_s);
        QVERIFY2(noted.size() > 1 && noted.constLast().toInt() == 300 + noted.size() - 1, qPrintable(noted.join(u' ')));
        const QString today = u"Archivi/Eventi_05-03-2004.zeb"_s;
        const QStringList copied = site.rowsOfCopy(today, all);
        QVERIFY2(copied.size() >= 300 && copied.size() < stored, qPrintable(QString::number(copied.size())));
        for (qsizetype i = 0; i < copied.size(); ++i)
            QCOMPARE(copied[i], QString::number(i + 1));
        QVERIFY(!QFile::exists(site.target.filePath(today + u"-wal"_s)));
        QCOMPARE(site.rows(today, u"SELECT count(*) FROM Eventi"_s), QStringList{QString::number(stored)});
        // While it is open its file tells nothing about what is new.
        QVERIFY(site.backUp().value() >= 1);
        QCOMPARE(site.rowsOfCopy(today, all).size(), stored);
    }

    void refusesWhereItCannotStand_data()
    {
        Rows<QString, FaultCode> row("place", "fault");
        row("the program folder", u"."_s, FaultCode::OwnFolder);
        row("a folder in it", u"Archivi"_s, FaultCode::OwnFolder);
        row("a link to it", u"link"_s, FaultCode::OwnFolder);
        row("nothing", u"nothing"_s, FaultCode::NotFound);
        row("a file", u"Impost.stp"_s, FaultCode::NotFound);
        row("the folder of a program at work", u"*"_s, FaultCode::AlreadyInUse);
    }
    void refusesWhereItCannotStand()
    {
        QFETCH(QString, place);
        Site site;
        QFile::link(site.directory.path(), site.directory.filePath(u"link"_s));
        FolderLock held;
        QVERIFY(held.take(site.target.path()).ok());
        Backup backup(site.archives, place == u"*"_s ? site.target.path() : site.directory.filePath(place));
        const Result<void> begun = backup.begin();
        QVERIFY(!begun.ok());
        QTEST(begun.fault().code, "fault");
    }

    void cutOffAnywhereLeavesWholeFiles_data()
    {
        const Rows<FaultCode> row("fault");
        row("target broken", FaultCode::InputOutput);
        row("target full", FaultCode::DiskFull);
        row("target read only by now", FaultCode::AccessDenied);
    }
    void cutOffAnywhereLeavesWholeFiles()
    {
        QFETCH(FaultCode, fault);
        Site site;
        site.disk.fault = fault;
        QVERIFY(site.backUp().ok());
        const int stride = fault == FaultCode::InputOutput ? 1 : 7;
        for (int steps = 0, rounds = 0, done = 0; !done; steps += stride) {
            const QByteArray before = site.copyOf(oldDay);
            site.addEvents(u"01-03-2004"_s, {{u"4"_s, u"TX"_s, u"A"_s, u""_s, u""_s, u"09:00:00"_s}});
            site.disk.steps.clear();
            site.disk.stopAt = steps;
            const Result<int> outcome = site.backUp();
            done = outcome.ok();
            QVERIFY(done || (outcome.fault().code == fault && outcome.fault().subject.startsWith(site.target.path())));
            site.disk.stopAt = -1;
            const QByteArray now = site.copyOf(oldDay);
            QVERIFY2(now == before || now == site.read(oldDay), qPrintable(QString::number(steps)));
            QVERIFY(site.backUp().ok());
            QCOMPARE(site.rowsOfCopy(oldDay, all).size(), ++rounds + 1);
            QVERIFY(QDir(site.target.filePath(u"Archivi"_s))
                        .entryList({u".kor-*"_s}, QDir::Files | QDir::Hidden)
                        .isEmpty());
        }
    }

    void killedAtTenMoments()
    {
        Site site;
        QStringList names{oldDay, otherDay};
        for (int i = 0; i < 150; ++i)
            names.append(u"Note %1.txt"_s.arg(i)); // more than go in one lot
        const auto change = [&](int version) {
            site.addEvents(u"01-03-2004"_s, {{u"4"_s, u"TX"_s, u"A"_s, u""_s, u""_s, u"09:00:00"_s}});
            for (const QString &note : names.sliced(2))
                site.write(note, QByteArray(100 * version, 'x'));
        };
        change(1);
        QVERIFY(site.backUp().ok());
        const qsizetype all = site.disk.steps.size();
        bool wasMixed = false;
        for (int moment = 1; moment <= 10; ++moment) {
            QList<QByteArray> before;
            for (const QString &name : std::as_const(names))
                before.append(site.copyOf(name));
            change(1 + moment);
            site.disk.steps.clear();
            const int status = inChild([&] {
                (void)site.backUp([&] {
                    if (site.disk.steps.size() >= moment * all / 12)
                        ::raise(SIGKILL);
                });
                return 0;
            });
            QVERIFY2(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL, qPrintable(QString::number(moment)));
            int changed = 0;
            for (qsizetype i = 0; i < names.size(); ++i) {
                const QByteArray now = site.copyOf(names[i]);
                QVERIFY2(now == before[i] || now == site.read(names[i]), qPrintable(names[i]));
                changed += now == before[i] ? 0 : 1;
            }
            wasMixed |= changed > 0 && changed + 1 < names.size();
            QVERIFY(site.backUp().ok());
            for (const QString &name : std::as_const(names))
                QCOMPARE(site.copyOf(name), site.read(name));
            QVERIFY(QDir(site.target.path()).entryList({u".kor-*"_s}, QDir::Files | QDir::Hidden).isEmpty());
        }
        QVERIFY(wasMixed);
    }

    /// The event loop is held up for less than 50 ms.
    void stopOnADeviceThatHangs()
    {
        Site site;
        const QByteArray hangs = QFile::encodeName(site.target.filePath(u"hangs"_s));
        QCOMPARE(::mkfifo(hangs.constData(), 0600), 0);
        auto check = std::make_unique<LotCheck>();
        check->add({QFile::decodeName(hangs), site.archives.rawKey(QByteArray(ArchiveKeys::SaltSize, 's')), true});
        int writer = -1;
        QTRY_VERIFY((writer = ::open(hangs.constData(), O_WRONLY | O_NONBLOCK)) >= 0);
        QElapsedTimer time;
        time.start();
        check.reset();
        QVERIFY2(time.elapsed() < 100, qPrintable(QString::number(time.elapsed())));
        ::close(writer);
    }

    void fullWhileTheOpenDayIsCopied()
    {
        RecordingVfs vfs;
        Site site;
        FakeClock clock;
        Notices notices;
        EventLog log(site.archives, clock, notices);
        log.open();
        const auto store = [&] { return log.append(makeEvent(EventRecord{}, clock.moment)); };
        QVERIFY(store() && site.backUp().ok() && store());
        const QString today = u"Archivi/Eventi_05-03-2004.zeb"_s;
        const QByteArray before = site.copyOf(today);
        vfs.refusal = SQLITE_FULL;
        const Result<int> done = site.backUp();
        vfs.refusal = 0;
        QVERIFY(!done.ok() && done.fault().subject.startsWith(site.target.path()));
        QCOMPARE(done.fault().code, FaultCode::DiskFull);
        QCOMPARE(site.copyOf(today), before);
        QVERIFY(store() && site.backUp().ok());
        QCOMPARE(site.rowsOfCopy(today, all).size(), 3);
    }

    void readOnlyTarget_data()
    {
        const Rows<QString> row("folder");
        row("the target itself", u"."_s);
        row("a folder in it", u"Archivi"_s);
    }
    void readOnlyTarget()
    {
        QFETCH(QString, folder);
        Site site;
        QVERIFY(site.backUp().ok());
        const QByteArray before = site.copyOf(oldDay);
        site.addEvents(u"01-03-2004"_s, {{u"4"_s, u"TX"_s, u"A"_s, u""_s, u""_s, u"09:00:00"_s}});
        const QString path = site.target.filePath(folder);
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner));
        enum { Refused = 7, Otherwise };
        const int status = inChild([&] {
            const Result<int> done = giveUpCapabilities() ? site.backUp() : 0;
            const bool isRefused = !done.ok() && done.fault().code == FaultCode::AccessDenied &&
                                   done.fault().subject.startsWith(site.target.path());
            return isRefused ? Refused : Otherwise;
        });
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QVERIFY(WIFEXITED(status));
        QCOMPARE(WEXITSTATUS(status), int(Refused));
        QCOMPARE(site.copyOf(oldDay), before);
        QVERIFY(site.backUp().ok());
        QCOMPARE(site.rowsOfCopy(oldDay, all).size(), 2);
    }

    void damagedDayIsToldAndCostsNoOther_data()
    {
        const Rows<int> row("page");
        row("of the table", 2);
        row("of the index", 3);
    }
    void damagedDayIsToldAndCostsNoOther()
    {
        QFETCH(int, page);
        Site site;
        QVERIFY(site.backUp().ok());
        const QByteArray whole = site.copyOf(oldDay);
        QByteArray damaged = site.read(oldDay);
        damaged[(page - 1) * 4096 + 100] = char(~damaged[(page - 1) * 4096 + 100]);
        site.write(oldDay, damaged);
        // Long ago, so that its check sums are to tell.
        QFile file(site.folder.path(oldDay));
        QVERIFY(file.open(QIODevice::ReadWrite) &&
                file.setFileTime(QDateTime::currentDateTime().addDays(-1), QFile::FileModificationTime));
        site.addEvents(u"02-03-2004"_s, {{u"3"_s, u"TX"_s, u"A"_s, u""_s, u""_s, u"09:00:00"_s}});
        const Result<int> done = site.backUp();
        QVERIFY(!done.ok());
        QCOMPARE(done.fault().code, FaultCode::Damaged);
        QVERIFY(done.fault().subject.endsWith(oldDay));
        QCOMPARE(site.copyOf(oldDay), whole);
        QCOMPARE(site.rowsOfCopy(otherDay, all), QStringList({u"2"_s, u"3"_s}));
    }

    void fewOpenFiles()
    {
        Site site;
        for (int i = 0; i < 200; ++i)
            site.write(u"Note %1.txt"_s.arg(i), "x");
        const int status = inChild([&] {
            constexpr rlimit few = {64, 64};
            while (::dup(0) < 32) // as much as a window and its lists
                ;
            return ::setrlimit(RLIMIT_NOFILE, &few) == 0 && site.backUp().ok() ? 0 : 1;
        });
        QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }

    /// It is not closed under its own name alone, with which all locks of this program would go.
    void linkToTheOpenDay()
    {
        Site site;
        FakeClock clock;
        Notices notices;
        EventLog log(site.archives, clock, notices);
        log.open();
        const QString today = site.folder.path(u"Archivi/Eventi_05-03-2004.zeb"_s);
        QVERIFY(QFile::link(today, site.directory.filePath(u"oggi"_s)) && site.backUp().ok());
        const int status = inChild([&] {
            // The place of shared locks.
            struct flock lock = {F_WRLCK, SEEK_SET, 0x40000002, 510, 0};
            const int file = ::open(QFile::encodeName(today).constData(), O_RDWR);
            return ::fcntl(file, F_GETLK, &lock) == 0 && lock.l_type == F_RDLCK ? 0 : 1;
        });
        QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }

    void targetThatGoesEndsIt_data()
    {
        const Rows<QString, int> row("step", "count");
        row("while files are looked for", u"make"_s, 1);
        row("while they are written", u"write"_s, 3);
        row("while they are put in place", u"rename"_s, 1);
    }
    void targetThatGoesEndsIt()
    {
        QFETCH(QString, step);
        QFETCH(int, count);
        Site site;
        bool removed = false;
        const Result<int> done = site.backUp([&] {
            if (!removed && site.disk.steps.filter(step + u' ').size() == count)
                removed = QDir(site.target.path()).removeRecursively();
        });
        QVERIFY(removed);
        QVERIFY(!done.ok());
        QVERIFY(done.fault().subject.startsWith(site.target.path()));
    }
};

QTEST_GUILESS_MAIN(TestBackup)
#include "tst_backup.moc"
