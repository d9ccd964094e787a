#include "archive/VerifyCommand.h"
#include "support/ToolRun.h"

using namespace tool;

namespace {

const QString day = u"Archivi/Eventi_05-03-2004.zeb"_s;

/// A folder in good order with two days, of which one thing is then not.
void lay(TestFolder &test)
{
    test.addUsers({listOf("12,TX,Rossi,Mario")});
    for (const char *date : {"04-03-2004", "05-03-2004"})
        test.addEvents(QString::fromLatin1(date),
                       {u"12,TX,A,,,08:00:00"_s.split(u','), u"12,TX,B,X,,09:00:00"_s.split(u','),
                        u"7,DKS,D,,X,10:00:00"_s.split(u',')});
    for (const QString &name : test.files(u"Archivi"_s))
        QFile::setPermissions(test.folder.path(u"Archivi/"_s + name), QFile::ReadOwner | QFile::WriteOwner);
    QFile::setPermissions(test.folder.path(u"Archivi"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QStringList verify(TestFolder &test, bool isQuick)
{
    ToolRun run(test);
    run.clock.moment = QDateTime::currentDateTime();
    VerifyCommand command(run.site(), isQuick, run);
    if (!finish(command))
        return {u"not done"_s};
    QStringList lines;
    for (const QByteArray &line : run.lines())
        lines.append(QString::fromUtf8(line).remove(u"Archivi/"_s));
    if (command.hasFaults() == lines.isEmpty())
        lines.append(u"not told"_s);
    return lines;
}

} // namespace

class TestVerify : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void faults_data()
    {
        const Rows<QByteArray, QStringList, bool> row("change", "told", "isQuickEnough");
        const auto ofRow = [](const char *what) {
            return QStringList{u"Eventi_05-03-2004.zeb: row 2 "_s + QLatin1String(what)};
        };
        const QStringList form = ofRow("does not have the proper form");
        row("in order", "", {}, true);
        row("code", "UPDATE Eventi SET Codice = '012' WHERE ProgEv = 2", form, false);
        row("type", "UPDATE Eventi SET Tipo = 'tx' WHERE ProgEv = 2", form, false);
        row("channel", "UPDATE Eventi SET Canale = 'E' WHERE ProgEv = 2", form, false);
        row("mark", "UPDATE Eventi SET KorDis = 'x' WHERE ProgEv = 2", form, false);
        row("sorting date", "UPDATE Eventi SET DataOrd = '' WHERE ProgEv = 2", form, false);
        row("no time", "UPDATE Eventi SET Ora = '9:00:00' WHERE ProgEv = 2", form, false);
        row("other day", "UPDATE Eventi SET Data = '06-04-2004', DataOrd = '20040406' WHERE ProgEv = 2",
            ofRow("is of another day"), false);
        row("day behind it", "UPDATE Eventi SET Data = '06-03-2004', DataOrd = '20040306' WHERE ProgEv = 3", {}, true);
        row("order", "UPDATE Eventi SET Ora = '06:59:59' WHERE ProgEv = 2",
            ofRow("is more than an hour before the one in front of it"), false);
        row("repeated hour", "UPDATE Eventi SET Ora = '07:00:00' WHERE ProgEv = 2", {}, true);
        row("index", "PRAGMA writable_schema = 1; UPDATE sqlite_master SET rootpage = 77 WHERE name = 'EventiOrdine'",
            {u"Eventi_05-03-2004.zeb: damaged or"_s}, true);
    }
    void faults()
    {
        QFETCH(QByteArray, change);
        QFETCH(QStringList, told);
        QFETCH(bool, isQuickEnough);
        TestFolder test;
        lay(test);
        if (!change.isEmpty())
            test.execute(day, change);
        QCOMPARE(verify(test, false).size(), told.size());
        if (!told.isEmpty())
            QVERIFY2(verify(test, false)[0].startsWith(told[0].left(40)), qPrintable(verify(test, false)[0]));
        QCOMPARE(verify(test, true).size(), isQuickEnough ? told.size() : 0);
    }

    void files_data()
    {
        const Rows<QString, QString, bool> row("name", "told", "isOld");
        row("journal of nobody", u"Eventi_05-03-2004.zeb-journal"_s,
            u"Eventi_05-03-2004.zeb-journal: should not be there"_s, false);
        row("journal without archive", u"Eventi_06-03-2004.zeb-shm"_s,
            u"Eventi_06-03-2004.zeb-shm: should not be there"_s, false);
        row("being copied", u"Fascie.zeb.part"_s, {}, false);
        row("left by a copy", u"Fascie.zeb.part"_s, u"Fascie.zeb.part: should not be there"_s, true);
        row("working copy", u"Anatmp.$$$"_s, u"Anatmp.$$$: should not be there"_s, true);
        row("set aside", u"Eventi_05-03-2004.zeb.guasto"_s,
            u"Eventi_05-03-2004.zeb.guasto: damaged archive that was set aside"_s, false);
        row("empty", u"Eventi_07-03-2004.zeb"_s, u"Eventi_07-03-2004.zeb: "_s, false);
    }
    void files()
    {
        QFETCH(QString, name);
        QFETCH(QString, told);
        QFETCH(bool, isOld);
        TestFolder test;
        lay(test);
        test.write(u"Archivi/"_s + name, {});
        QFile file(test.folder.path(u"Archivi/"_s + name));
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        if (isOld && file.open(QIODevice::ReadWrite))
            QVERIFY(file.setFileTime(QDateTime::currentDateTime().addDays(-2), QFileDevice::FileModificationTime));
        const QStringList lines = verify(test, false);
        QCOMPARE(lines.size(), told.isEmpty() ? 0 : 1);
        QVERIFY2(told.isEmpty() || lines[0].startsWith(told), qPrintable(lines.join(u'\n')));
    }

    void cutOff()
    {
        TestFolder test;
        lay(test);
        auto left = std::move(test.archives.open(day, Database::Use::Log).value());
        QVERIFY(left.execute("UPDATE Eventi SET KorDis = 'X'").ok());
        left.keepSideFiles();
        left = std::move(test.archives.open(u"Archivi/Anagrafico.zeb"_s, Database::Use::Safe).value());
        ToolRun run(test);
        VerifyCommand command(run.site(), false, run);
        QVERIFY(finish(command) && !command.hasFaults() && run.output.isEmpty());
        QCOMPARE(run.told.value(0), u"%1-wal: left by a program that was cut off; part of its archive"_s.arg(day));
    }

    void damageAndRights()
    {
        TestFolder test;
        lay(test);
        test.damage(day);
        QFile::setPermissions(test.folder.path(u"Archivi/Anagrafico.zeb"_s), QFile::ReadOwner | QFile::ReadOther);
        for (const bool isQuick : {false, true}) {
            const QStringList lines = verify(test, isQuick);
            QCOMPARE(lines.size(), 2);
            QVERIFY2(lines[0].startsWith(u"Anagrafico.zeb: is open to other users"), qPrintable(lines[0]));
            QVERIFY2(lines[1].startsWith(u"Eventi_05-03-2004.zeb: "), qPrintable(lines[1]));
        }
    }
};

QTEST_GUILESS_MAIN(TestVerify)
#include "tst_verify.moc"
