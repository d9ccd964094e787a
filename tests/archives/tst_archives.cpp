#include "archives/PageProof.h"
#include "archives/PasswordField.h"
#include "archives/Templates.h"
#include "support/Fixtures.h"
#include "support/RecordingVfs.h"

#include <QProcess>
#include <QStandardPaths>

#include <cerrno>

class TestArchives : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void templates()
    {
        TestFolder test;
        QSet<QByteArray> salts;
        const QStringList names = test.files(u"Archivi"_s);
        QCOMPARE(names, listOf("Anagraficoorg.zeb,Eventiorg.zeb,Eventitmp.zeb,Fascieorg.zeb,Ferieorg.zeb"));
        for (const QString &name : names) {
            salts.insert(test.read(u"Archivi/"_s + name).left(16));
            const QStringList tables =
                test.rows(u"Archivi/"_s + name, u"SELECT sql FROM sqlite_master WHERE type='table'"_s);
            QVERIFY(!tables.isEmpty());
            for (const QString &sql : tables)
                QCOMPARE(sql.count(u" TEXT"_s), sql.count(u" TEXT NOT NULL DEFAULT ''"_s));
        }
        const QStringList passwords = test.rows(ArchiveName::UsersTemplate, u"SELECT * FROM Password"_s);
        QCOMPARE(passwords.size(), 1);
        for (const QString &field : passwords.first().split(u'|'))
            QCOMPARE(unscramble(field), QString(10, u' '));
        // Made again they keep their salt, which the archives of a folder share.
        QVERIFY(makeTemplates(test.archives).ok() && salts.size() == 1);
        QCOMPARE(test.read(u"Archivi/Eventiorg.zeb"_s).left(16), *salts.begin());
    }

    /// Without its lock the next foreign reader deletes the log's journal, and with it what is stored from then on.
    void aLookLeavesTheLogItsLock()
    {
        TestFolder test;
        const QString name = ArchiveName::events(u"05-03-2004"_s);
        test.addEvents(u"05-03-2004"_s, {});
        Result<Database> log = test.archives.open(name, Database::Use::Log);
        QVERIFY(log && log.value().execute("INSERT INTO Eventi (Codice) VALUES ('1')"));
        const auto locks = [] {
            QFile file(u"/proc/locks"_s);
            const QByteArray all = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
            return all.count(' ' + QByteArray::number(QCoreApplication::applicationPid()) + ' ');
        };
        const qsizetype before = locks();
        QVERIFY(before > 0 && test.archives.open(name, Database::Use::Safe));
        QCOMPARE(locks(), before);
    }

    void passwordOpensAndNoOtherDoes()
    {
        const QString shell = QStandardPaths::findExecutable(u"sqlcipher"_s);
        if (shell.isEmpty())
            QSKIP("the sqlcipher shell is not installed");
        TestFolder test;
        const auto ask = [&](const QString &name, const QString &password) {
            QProcess process;
            process.start(
                shell, {test.folder.path(u"Archivi/"_s + name),
                        QStringLiteral("PRAGMA key='%1'; PRAGMA cipher_compatibility=3; PRAGMA cipher_page_size=4096; "
                                       "SELECT count(*)>0 FROM sqlite_master;")
                            .arg(password)});
            process.waitForFinished();
            return process.readAllStandardOutput().trimmed();
        };
        for (const QString &name : test.files(u"Archivi"_s)) {
            QCOMPARE(ask(name, u"KQTREV47MZWS"_s), QByteArray("1"));
            QCOMPARE(ask(name, u"kqtrev47mzws"_s), QByteArray());
            QCOMPARE(ask(name, QString()), QByteArray());
        }
    }

    void rowsOneByOne()
    {
        TestFolder test;
        test.addUsers({listOf("1,TX"), listOf("2,TX"), listOf("3,TX")});
        Database database = test.hold(ArchiveName::Users, "SELECT 1");
        const QString sql = u"SELECT Codice FROM Utenti WHERE Codice <> ?"_s;
        QStringList seen;
        const auto first = [&seen](const Statement &row) { return seen.append(row.text(0)), false; };
        QVERIFY(database.each(sql, {u"2' OR 'a'='a"_s}, first) && seen == listOf("1"));
        const auto refuse = [](const Statement &row) -> Result<void> {
            return Fault{FaultCode::TooLarge, row.text(0)};
        };
        QCOMPARE(database.each(sql, {u"1"_s}, refuse).fault().subject, u"2"_s);
        const Database other = test.hold(ArchiveName::Users);
        QCOMPARE(database.each(sql, {QString()}, first).fault().code, FaultCode::Locked);
    }

    /// As a program leaves it that was cut off: the files are copied while a writer has them open.
    void staleJournalsNeverComeBack_data()
    {
        const Rows<bool, QString> row("writeAhead", "journal");
        row("write-ahead", true, u"-wal"_s);
        row("rollback", false, u"-journal"_s);
    }
    void staleJournalsNeverComeBack()
    {
        QFETCH(bool, writeAhead);
        QFETCH(QString, journal);
        TestFolder test;
        test.addUsers({listOf("1,TX")});
        const QString users = QStringView(ArchiveName::Users).toString();
        const QString crashed = u"Archivi/Fascie.zeb"_s;
        const QString codes = u"SELECT Codice FROM Utenti ORDER BY Codice"_s;
        QByteArray left; // of the journal
        {
            Result<Database> writer = test.archives.open(users, writeAhead ? Database::Use::Log : Database::Use::Safe);
            const QByteArray begun = "PRAGMA cache_size = 1; BEGIN; INSERT INTO Utenti (Codice) VALUES ('2');",
                             much = "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<2000) "
                                    "INSERT INTO Utenti (Codice) SELECT i FROM n";
            QVERIFY(writer.value().execute(begun + (writeAhead ? "COMMIT" : much)).ok());
            for (const QString &side : {QString(), journal})
                test.write(crashed + side, test.read(users + side));
            left = test.read(crashed + journal);
            QVERIFY(!left.isEmpty());
        }
        const QStringList told = writeAhead ? listOf("1,2") : listOf("1");

        // Copied away, what had been committed goes along and nothing else.
        QVERIFY(test.archives.copy(crashed, u"Archivi/AnaCon.zeb").ok());
        QCOMPARE(test.rows(u"Archivi/AnaCon.zeb", codes), told);
        QVERIFY(!test.folder.exists(crashed + u"-wal"_s));

        // Replaced, the old content is gone for good although a journal stood beside it.
        test.write(crashed + journal, left);
        QVERIFY(test.archives.copy(ArchiveName::UsersTemplate, crashed).ok());
        QCOMPARE(test.rows(crashed, codes), QStringList());
        // The same where only a journal is left of an archive.
        const QString lost = u"Archivi/AnaPrn.zeb"_s;
        test.write(lost + journal, left);
        QVERIFY(test.archives.copy(ArchiveName::UsersTemplate, lost).ok());
        QCOMPARE(test.rows(lost, codes), QStringList());
        QVERIFY(!test.folder.exists(lost + journal));
        QVERIFY(test.archives.remove(crashed).ok() && !test.folder.exists(crashed));
    }

    /// A link is followed, and its journals are those of the file that it leads to.
    void links()
    {
        TestFolder test, share;
        const QString users = QStringView(ArchiveName::Users).toString();
        share.addUsers({listOf("1,TX")});
        share.write(users + u"-journal"_s, "of an earlier time");
        QVERIFY(QFile::link(share.folder.path(users), test.folder.path(users)));
        QVERIFY(test.archives.copy(ArchiveName::UsersTemplate, ArchiveName::Users).ok());
        QCOMPARE(share.rows(users, u"SELECT Codice FROM Utenti"_s), QStringList());
        QCOMPARE(share.files(u"Archivi"_s).filter(u"Anagrafico.zeb"_s), QStringList{u"Anagrafico.zeb"_s});
        QVERIFY(QFile::remove(share.folder.path(users)));
        QCOMPARE(test.archives.copy(ArchiveName::UsersTemplate, ArchiveName::Users).fault().code, FaultCode::NotFound);
    }

    /// The library calls it a read or write error.
    void fullDiskForTheSharedMemory()
    {
        RecordingVfs vfs;
        TestFolder test;
        test.addEvents(u"05-03-2004"_s, {});
        Result<Database> log = test.archives.open(ArchiveName::events(u"05-03-2004"_s), Database::Use::Log);
        for (const auto &[error, code] :
             {std::pair(ENOSPC, FaultCode::DiskFull), std::pair(EIO, FaultCode::InputOutput)}) {
            vfs.sharedMemoryError = error;
            const Result<void> stored = log.value().execute("INSERT INTO Eventi (Codice) VALUES ('1')");
            QVERIFY(!stored);
            QCOMPARE(stored.fault().code, code);
        }
    }

    void provenPages_data()
    {
        using Change = std::function<QByteArray(QByteArray)>;
        const auto flipped = [](qsizetype place) {
            return [place](QByteArray bytes) {
                bytes[place] = char(bytes[place] ^ 4);
                return bytes;
            };
        };
        const Rows<Change, bool> row("change", "proven");
        row(
            "nothing", [](const QByteArray &bytes) { return bytes; }, true);
        row("a bit of the salt", flipped(3), false);
        row("a bit of the first page", flipped(16), false);
        row("a bit of another page", flipped(2 * 4096), false);
        row("a bit of a check sum", flipped(3 * 4096 - 13), false);
        row(
            "the last page gone", [](const QByteArray &bytes) { return bytes.chopped(4096); }, false);
        row(
            "half a page gone", [](const QByteArray &bytes) { return bytes.chopped(2048); }, false);
        row(
            "a page of zeros behind", [](const QByteArray &bytes) { return bytes + QByteArray(4096, 0); }, false);
        row(
            "two pages exchanged",
            [](const QByteArray &bytes) {
                return bytes.first(4096) + bytes.sliced(8192, 4096) + bytes.sliced(4096, 4096) + bytes.sliced(12288);
            },
            false);
        row(
            "nothing there", [](const QByteArray &) { return QByteArray(); }, false);
    }
    void provenPages()
    {
        QFETCH(std::function<QByteArray(QByteArray)>, change);
        TestFolder test;
        QList<QStringList> events;
        for (int i = 0; i < 100; ++i)
            events.append({QString::number(i), u"TX"_s, u"A"_s, {}, {}, u"08:00:00"_s});
        test.addEvents(u"05-03-2004"_s, events);
        const QString name = ArchiveName::events(u"05-03-2004"_s);
        const QByteArray sound = test.read(name);
        QVERIFY(sound.size() > 4 * 4096);
        test.write(name, change(sound));
        const auto isProven = [&](const QByteArray &salt) {
            return PageProof().holds(test.folder.path(name), test.archives.rawKey(salt));
        };
        QTEST(isProven(sound.first(16)), "proven");
        QVERIFY(!isProven(QByteArray(16, 'x')));
    }

    void setAsideKeepsEarlierOnes()
    {
        TestFolder test;
        const QString day = ArchiveName::events(u"05-03-2004"_s);
        QStringList names;
        for (const char *content : {"first", "second"}) {
            test.write(day, content);
            test.write(day + u"-wal"_s, content);
            names.append(test.archives.setAside(day).value());
            QCOMPARE(test.read(names.last()), QByteArray(content));
            QCOMPARE(test.read(names.last() + u"-wal"_s), QByteArray(content));
            QVERIFY(!test.folder.exists(day) && !test.folder.exists(day + u"-wal"_s));
        }
        QVERIFY(names[0] != names[1] && !names[0].endsWith(u".zeb"_s));
        QCOMPARE(test.read(names[0]), QByteArray("first"));
    }

    void scrambledPasswords_data()
    {
        const Rows<QString> row("clear");
        row("", u"          "_s);
        row(" lead", u" lead     "_s);
        row("0123456789ABC", u"0123456789"_s);
        row("\u20AC\u0178", u"\u20AC\u0178        "_s);
        row("gr\u00FC\u00DFe\u00FF", u"gr\u00FC\u00DFe\u00FF    "_s);
    }
    void scrambledPasswords()
    {
        QRandomGenerator random(1);
        const QString password = QString::fromUtf8(QTest::currentDataTag());
        QSet<QString> forms;
        for (int i = 0; i < 200; ++i) {
            const QString field = scramble(password, random);
            QCOMPARE(field.size(), 37);
            QTEST(unscramble(field).value_or(QString()), "clear");
            for (const QChar filler : field.left(11) + field.right(15))
                QVERIFY(filler.unicode() >= 140 && filler.unicode() <= 234);
            QVERIFY(field[11].unicode() > 108 && field[11].unicode() <= 118); // the key
            forms.insert(field);
        }
        QCOMPARE(forms.size(), 200);
    }

    void damagedPasswordFields()
    {
        const QString good(11, QChar(150)), rest(25, QChar(150));
        QVERIFY(!unscramble(QString(21, QChar(150))));                     // too short
        QVERIFY(!unscramble(good + QChar(107) + rest));                    // the key below its range
        QVERIFY(!unscramble(good + QChar(150) + QString(25, QChar(407)))); // a character above all codes
        QVERIFY(!unscramble(good + QChar(118) + QString(25, QChar(117)))); // a character below the key
        QCOMPARE(trimBlanks(u"  \ta b\t "_s), u"\ta b\t"_s);
        QCOMPARE(unscramble(QString()), QString(10, u' '));
    }
};

QTEST_GUILESS_MAIN(TestArchives)
#include "tst_archives.moc"
