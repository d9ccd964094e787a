// A guard's work at the built program, by keyboard: a transmitter is enrolled, names are given, events are found.

#include "e2e/Programs.h"
#include "support/Workbooks.h"

#include <QDir>

class TestGuard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void enrolsAndFinds()
    {
        Desktop desktop;
        if (!desktop.isThere())
            QSKIP("Xvfb, xdotool or openbox is not installed");
        Site test;
        test.addUsers({listOf("777,DKS,O'Hara,Sean")});
        test.setPassword(u"utenti"_s, Passwords::Type::Users);
        test.write(u"Impost.stp"_s, "COM=7\r\nLINGUA=2\r\nNUMEVOD=25\r\nCHECK=0\r\nPRN=-1\r\n");
        Running interface("kor-simulator", test.interface());
        QVERIFY(interface.tells("Porte/COM7"));
        Running supervisor("kor-supervisor", {u"--folder"_s, test.directory.path()}, desktop.environment);
        QVERIFY(interface.tells("query answered"));
        QTest::qWait(1500);
        const auto openRegister = [&desktop] {
            desktop.press("alt+d u");
            QTest::qWait(500);
            desktop.type(u"utenti"_s);
            desktop.press("Return");
            QTest::qWait(1500);
        };
        const auto users = [&test] {
            return test.rows(ArchiveName::Users, u"SELECT Codice, Tipo, Cognome, Nome FROM Utenti ORDER BY Codice"_s);
        };
        const auto stored = [&test] { return test.rows(Site::day(), u"SELECT Codice, Tipo, Canale FROM Eventi"_s); };
        const QString keypad = u"777|DKS|O'Hara|Sean"_s;

        // Presented to the interface, named, saved.
        openRegister();
        desktop.press("alt+n");
        interface.say("tx 12345 A");
        QTest::qWait(1000);
        desktop.press("Return");
        desktop.press("Right Right");
        desktop.type(u"Bianchi"_s);
        desktop.press("Return Right");
        desktop.type(u"Anna"_s);
        desktop.press("Return alt+s");
        QTRY_COMPARE_WITH_TIMEOUT(users(), QStringList({u"12345|TX|Bianchi|Anna"_s, keypad}), 20'000);
        QVERIFY(stored().isEmpty()); // nobody had that code yet
        interface.say("tx 12345 B");
        interface.say("dks 777 D");
        const QStringList both = {u"12345|TX|B"_s, u"777|DKS|D"_s};
        QTRY_COMPARE(stored(), both);

        // Found by the search, with the names, in a file for others.
        desktop.press("alt+c e");
        QTest::qWait(1000);
        desktop.press("alt+s");
        QTest::qWait(1500);
        desktop.press("alt+e");
        QTest::qWait(1500);
        QDir(test.directory.path()).mkdir(u"found"_s);
        const QString file = test.directory.filePath(u"found/found.xls"_s);
        desktop.type(file);
        desktop.press("Return");
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(file), 20'000);
        const QJsonValue sheet = readWorkbooks(test.folder.path(u"found"_s))[0][0];
        const auto begins = [&sheet](int row, const char *texts) {
            const QJsonArray cells = sheet[row].toArray();
            return QStringList({cells[0].toString(), cells[1].toString(), cells[2].toString()}) == listOf(texts);
        };
        QVERIFY(sheet[3] == 4 && begins(5, "Bianchi,Anna,TX") && begins(7, "O'Hara,Sean,DKS"));
        // The program is new: nobody knows of the hours before.
        QVERIFY(sheet[6][0].toString().contains(u"Not known whether listening: once, "_s));

        // Another code: the old one is nobody's from then on, and the backup still has it.
        desktop.press("Escape");
        openRegister();
        desktop.press("alt+m");
        QTest::qWait(500);
        desktop.type(u"00678"_s);
        desktop.press("Return alt+s");
        QTRY_COMPARE_WITH_TIMEOUT(users(), QStringList({u"678|TX|Bianchi|Anna"_s, keypad}), 20'000);
        QCOMPARE(test.rows(u"Archivi/Backup/AnaBack.zeb", u"SELECT Codice FROM Utenti ORDER BY Codice"_s),
                 listOf("12345,777"));
        interface.say("tx 12345 A");
        interface.say("tx 678 C");
        QTRY_COMPARE(stored(), both + QStringList{u"678|TX|C"_s});

        // Pulled out: keys go where they went, until the guard turns to the alarm, whose caption flashes with a mark.
        const QString alarm = u"^.+Multiprotocol Interface"_s;
        interface.say("unplug");
        QVERIFY(desktop.shows(alarm));
        desktop.press("space Return");
        QVERIFY(desktop.shows(alarm));
        desktop.press("ctrl+Tab Return");
        QVERIFY(desktop.hides(alarm));
        interface.say("plug");
        QVERIFY(interface.tells("query answered", 2));
        QCOMPARE(supervisor.end(), 0);
        for (const char *left : {"Anatmp.$$$", "AnaCon.zeb", "AnaCon2.zeb", "Eventitmp.$$$"})
            QVERIFY2(!test.folder.exists(u"Archivi/"_s + QString::fromLatin1(left)), left);
    }
};

QTEST_GUILESS_MAIN(TestGuard)
#include "tst_e2e_guard.moc"
