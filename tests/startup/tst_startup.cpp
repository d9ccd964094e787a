#include "archives/Tables.h"
#include "startup/Startup.h"
#include "support/Fixtures.h"

#include <QDir>
#include <QTest>

class TestStartup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data();
    void reads();
    void rewrites_data();
    void rewrites();
    void powerCutLeavesOldOrNew();
    void unusableSettings_data();
    void unusableSettings();
    void firstAndSecondStart();
    void missingParts_data();
    void missingParts();
    void namesWithoutRegardToCase();
};

void TestStartup::reads_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("expected");
    QTest::newRow("plain") << QByteArray("COM=0\r\nCHECK=60\r\n") << u"60"_s;
    QTest::newRow("first wins") << QByteArray("CHECK=1\r\nCHECK=2\r\n") << u"1"_s;
    QTest::newRow("inside another word") << QByteArray("XCHECK=5\r\n") << u"5"_s;
    QTest::newRow("blanks") << QByteArray("CHECK= 30 \r\n") << u"30"_s;
    QTest::newRow("case counts") << QByteArray("check=5\r\n") << QString();
    QTest::newRow("first equals sign of the line") << QByteArray("A=B CHECK=5\r\n") << u"B CHECK=5"_s;
    QTest::newRow("no line end") << QByteArray("COM=1\nCHECK=7") << u"7"_s;
    QTest::newRow("empty file") << QByteArray() << QString();
}

void TestStartup::reads()
{
    QFETCH(QByteArray, content);
    TestFolder test;
    test.write(u"Impost.stp"_s, content);
    const FakePrinters printers;
    QTEST(Settings(test.folder, printers).LeggiImpostazione(u"CHECK"_s), "expected");
}

void TestStartup::rewrites_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("in its place") << QByteArray("COM=0\r\nCHECK=60\r\nPRN=0\r\n")
                                  << QByteArray("COM=0\r\nCHECK=15\r\nPRN=0\r\n");
    QTest::newRow("every line of the key")
        << QByteArray("CHECK=1\r\nXCHECK=2\r\n") << QByteArray("CHECK=15\r\nCHECK=15\r\n");
    QTest::newRow("appended") << QByteArray("COM=0\r\n\xE0=\x80\r\n")
                              << QByteArray("COM=0\r\n\xE0=\x80\r\nCHECK=15\r\n");
    QTest::newRow("other line ends") << QByteArray("COM=0\n\nPRN=0")
                                     << QByteArray("COM=0\r\n\r\nPRN=0\r\nCHECK=15\r\n");
}

void TestStartup::rewrites()
{
    QFETCH(QByteArray, content);
    TestFolder test;
    test.write(u"Impost.stp"_s, content);
    const FakePrinters printers;
    QVERIFY(Settings(test.folder, printers).save(u"CHECK"_s, 15).ok());
    QTEST(test.read(u"Impost.stp"_s), "expected");
    QCOMPARE(test.files(), QStringList{u"Impost.stp"_s});
}

void TestStartup::powerCutLeavesOldOrNew()
{
    const QByteArray before = "COM=0\r\nLINGUA=2\r\n";
    const QByteArray after = "COM=3\r\nLINGUA=2\r\n";
    const QStringList wholeRoad = {u"write Setup.tmp"_s, u"flush Setup.tmp"_s, u"rename Impost.stp"_s};
    for (int stop = 0; stop <= 4; ++stop) {
        TestFolder test;
        test.write(u"Impost.stp"_s, before);
        test.disk.stopAt = stop;
        const FakePrinters printers;
        const bool told = Settings(test.folder, printers).save(u"COM"_s, 3).ok();
        QCOMPARE(test.read(u"Impost.stp"_s), stop < 3 ? before : after);
        QCOMPARE(told, stop == 4);
        QCOMPARE(test.disk.steps.mid(0, 3), wholeRoad.mid(0, stop));
    }
}

void TestStartup::unusableSettings_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QList<int>>("values"); // COM, LINGUA, NUMEVOD, CHECK, PRN, PRTC
    QTest::addColumn<QStringList>("keys");
    QTest::newRow("all in order") << QByteArray("COM=3\r\nLINGUA=4\r\nNUMEVOD=30\r\nCHECK=0\r\nPRN=-1\r\nPRTC=15\r\n")
                                  << QList<int>{3, 4, 30, 0, -1, 15} << QStringList();
    QTest::newRow("nothing") << QByteArray("\r\n") << QList<int>{0, 2, 0, 0, 0, 0}
                             << QStringList{u"COM"_s, u"LINGUA"_s};
    QTest::newRow("no numbers") << QByteArray("COM=x\r\nLINGUA=2nd\r\nNUMEVOD=x\r\nCHECK=15 min\r\n")
                                << QList<int>{0, 2, 0, 15, 0, 0} << QStringList{u"COM"_s, u"LINGUA"_s};
    QTest::newRow("language 0") << QByteArray("COM=1\r\nLINGUA=0\r\n") << QList<int>{1, 2, 0, 0, 0, 0}
                                << QStringList{u"LINGUA"_s};
    QTest::newRow("out of range") << QByteArray("COM=70000\r\nLINGUA=5\r\nCHECK=70000\r\nPRN=-70000\r\n")
                                  << QList<int>{32767, 2, 0, 32767, -32768, 0} << QStringList{u"LINGUA"_s};
}

void TestStartup::unusableSettings()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, keys);
    TestFolder test;
    test.write(u"Impost.stp"_s, content);
    const FakePrinters printers;
    Settings settings(test.folder, printers);
    Notices notices;
    QVERIFY(settings.read(2, notices).ok());
    const QList<int> values = {settings.PortaCom, settings.Lingua,       settings.NumEvOd,
                               settings.MinCheck, settings.IndStampante, settings.CodProtocollo};
    QTEST(values, "values");
    const QStringList told = takeNotices(notices);
    QCOMPARE(told.size(), keys.size());
    for (qsizetype i = 0; i < keys.size(); ++i)
        QVERIFY2(told[i].contains(QLatin1Char('\'') + keys[i] + QLatin1Char('\'')), qPrintable(told[i]));
    QCOMPARE(test.read(u"Impost.stp"_s), content);
}

void TestStartup::firstAndSecondStart()
{
    TestFolder test;
    FakePrinters printers;
    printers.installed = {u"alpha"_s, u"beta"_s};
    printers.byDefault = u"beta"_s;
    Notices notices;
    QVERIFY(!checkProgramFolder(test.folder));
    Settings settings(test.folder, printers);
    QVERIFY(!prepareProgramFolder(test.archives, settings, 2, notices));
    QCOMPARE(test.read(u"Impost.stp"_s), QByteArray("COM=0\r\nLINGUA=2\r\nNUMEVOD=25\r\nCHECK=60\r\nPRN=1\r\n"));
    QVERIFY(test.folder.isFolder(u"Archivi/BackUp"_s));
    for (const char *name : {"Anagrafico", "Fascie", "Ferie"}) {
        const QString working = u"Archivi/%1.zeb"_s.arg(QLatin1String(name));
        QVERIFY(!test.read(working).isEmpty());
        QCOMPARE(test.read(working), test.read(u"Archivi/%1org.zeb"_s.arg(QLatin1String(name))));
    }

    test.addUsers({{u"1"_s, u"TX"_s}});
    const QByteArray users = test.read(u"Archivi/Anagrafico.zeb"_s);
    const QByteArray bands = test.read(u"Archivi/Fascie.zeb"_s);
    QVERIFY(test.folder.remove(u"Archivi/Fascie.zeb"_s).ok());
    test.disk.steps.clear();
    QVERIFY(!prepareProgramFolder(test.archives, settings, 4, notices));
    QCOMPARE(test.read(u"Archivi/Anagrafico.zeb"_s), users);
    QCOMPARE(test.read(u"Archivi/Fascie.zeb"_s), bands);
    QVERIFY(!test.disk.steps.contains(u"rename Impost.stp"_s));
    QCOMPARE(settings.Lingua, 2);
    test.disk.steps.clear();
    QVERIFY(!prepareProgramFolder(test.archives, settings, 4, notices));
    QCOMPARE(test.disk.steps, QStringList());
    QVERIFY(notices.isEmpty());

    printers.installed.clear();
    QCOMPARE(settings.IndiceStampanteDefault(), -1);
    QVERIFY(!settings.StampanteValida(0));
}

void TestStartup::missingParts_data()
{
    QTest::addColumn<QStringList>("removed");
    QTest::addColumn<QString>("told");
    QTest::newRow("register template") << QStringList{u"Archivi/Anagraficoorg.zeb"_s}
                                       << u"Anagraficoorg.zeb' is missing"_s;
    QTest::newRow("day template") << QStringList{u"Archivi/Eventiorg.zeb"_s} << u"Eventiorg.zeb' is missing"_s;
    QTest::newRow("template of the search") << QStringList{u"Archivi/Eventitmp.zeb"_s} << QString();
    QTest::newRow("archive folder") << QStringList{u"Archivi"_s} << u"Archivi' is missing"_s;
}

void TestStartup::missingParts()
{
    QFETCH(QStringList, removed);
    QFETCH(QString, told);
    TestFolder test;
    for (const QString &name : removed) {
        if (test.folder.isFolder(name))
            QVERIFY(QDir(test.folder.path(name)).removeRecursively());
        else
            QVERIFY(test.folder.remove(name).ok());
    }
    test.disk.steps.clear();
    const std::optional<StartFault> fault = checkProgramFolder(test.folder);
    Texts texts;
    texts.fill(2);
    QCOMPARE(fault.has_value(), !told.isEmpty());
    if (fault)
        QVERIFY2(texts.sentence(fault->message).contains(told), qPrintable(texts.sentence(fault->message)));
    QCOMPARE(test.disk.steps, QStringList());
    QCOMPARE(test.files(), QStringList());
}

void TestStartup::namesWithoutRegardToCase()
{
    TestFolder test;
    test.write(u"Archivi/EVENTI_05-03-2004.ZEB"_s, "x");
    QVERIFY(test.folder.exists(u"archivi/Eventi_05-03-2004.zeb"_s));
    // Removed and made again by another program: the kept listing must notice.
    QVERIFY(QFile::remove(test.folder.path(u"Archivi/Eventi_05-03-2004.zeb"_s)));
    QVERIFY(!test.folder.exists(u"Archivi/Eventi_05-03-2004.zeb"_s));
    test.write(u"Archivi/eventi_05-03-2004.ZEB"_s, "x");
    QVERIFY(test.folder.path(u"Archivi/Eventi_05-03-2004.zeb"_s).endsWith(u"/eventi_05-03-2004.ZEB"_s));
}

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
