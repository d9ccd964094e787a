#include "archives/CopyEditor.h"
#include "support/Fixtures.h"

namespace {

const QStringList old = {u"1|"_s, u"2|"_s, u"3|"_s};

/// An editor of a register of three users.
struct Desk {
    Desk()
    {
        test.addUsers({{u"2"_s, u"TX"_s}, {u"3"_s, u"TX"_s}, {u"1"_s, u"TX"_s}});
        if (!test.disk.makeFolder(test.folder.path(u"Archivi/Backup"_s)) || !editor.open())
            qFatal("the editor does not open");
    }
    QStringList stored(QStringView archive = ArchiveName::Users)
    {
        return test.rows(archive, u"SELECT Codice, Note FROM Utenti ORDER BY Codice"_s);
    }
    QStringList copies() const { return test.files(u"Archivi"_s).filter(u"$"_s); }

    TestFolder test;
    CopyEditor editor{test.archives,
                      {u"Archivi/Anagrafico.zeb"_s, u"Archivi/Anatmp.$$$"_s, u"SELECT * FROM Utenti ORDER BY Codice"_s,
                       u"Archivi/Backup/AnaBack.zeb"_s}};
};

} // namespace

class TestCopyEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// A copy that was left is no obstacle; the archive can be one, and stays as it is.
    void opened()
    {
        for (const auto &[what, code] : {std::pair(QString(), -1),
                                         {u"missing"_s, int(FaultCode::NotFound)},
                                         {u"damaged"_s, int(FaultCode::Damaged)},
                                         {u"another's"_s, int(FaultCode::Damaged)},
                                         {u"locked"_s, int(FaultCode::Locked)},
                                         {u"disk"_s, int(FaultCode::InputOutput)}}) {
            Desk desk;
            desk.editor.discard();
            for (const char *side : {"", "-wal", "-journal", "-shm"})
                desk.test.write(u"Archivi/Anatmp.$$$"_s + QLatin1String(side), "left by a program that was cut off");
            const Database other =
                desk.test.hold(ArchiveName::Users, what == u"locked" ? "BEGIN EXCLUSIVE" : "SELECT 1");
            if (what == u"missing")
                QVERIFY(desk.test.archives.remove(ArchiveName::Users).ok());
            else if (what == u"damaged")
                desk.test.write(u"Archivi/Anagrafico.zeb"_s, QByteArray(8192, 'x'));
            else if (what == u"another's")
                QVERIFY(desk.test.archives.copy(ArchiveName::HolidaysTemplate, ArchiveName::Users).ok());
            desk.test.disk.steps.clear();
            desk.test.disk.stopAt = what == u"disk" ? 4 : -1; // the copy that was left is gone then
            const QByteArray before = desk.test.read(u"Archivi/Anagrafico.zeb"_s);
            QCOMPARE(codeOf(desk.editor.open()), code);
            QCOMPARE(desk.editor.add({{u"Codice"_s, u"4"_s}}).ok(), what.isEmpty());
            QCOMPARE(desk.test.read(u"Archivi/Anagrafico.zeb"_s), before);
            if (what.isEmpty() || what == u"another's" || what == u"disk")
                QCOMPARE(desk.copies(), what.isEmpty() ? QStringList{u"Anatmp.$$$"_s} : QStringList());
        }
    }

    /// At each step of a save in turn the power is cut, or only the disk fails: archive and backup are the old or the
    /// new ones, the backup first, and a program that lives on goes on with the same row.
    void stopped()
    {
        for (const bool goesOn : {false, true}) {
            int steps = 0;
            for (bool isWhole = false; !isWhole; ++steps) {
                Desk desk;
                desk.test.disk.goesOn = goesOn;
                desk.editor.set().moveTo(2);
                QVERIFY(desk.editor.edit({{u"Note"_s, u"x"_s}}).ok());
                QVERIFY(desk.test.archives.copy(ArchiveName::UsersTemplate, ArchiveName::UsersBackup).ok());
                if (steps == 0) {
                    const Database other = desk.test.hold(ArchiveName::Users);
                    QCOMPARE(codeOf(desk.editor.save()), int(FaultCode::Locked));
                }
                desk.test.disk.steps.clear();
                desk.test.disk.stopAt = steps;
                const Result<void> saved = desk.editor.save();
                isWhole = desk.test.disk.steps.size() < steps;
                const bool isReplaced = desk.test.disk.steps.contains(u"rename Anagrafico.zeb"_s);
                QCOMPARE(desk.stored(), isReplaced ? listOf("1|,2|,3|x") : old);
                const bool isBackedUp = desk.test.disk.steps.contains(u"rename AnaBack.zeb"_s);
                QCOMPARE(desk.stored(ArchiveName::UsersBackup), isBackedUp ? old : QStringList());
                QVERIFY(isReplaced ? isBackedUp : !saved);
                desk.test.disk.stopAt = -1;
                if (saved)
                    continue;
                QVERIFY(desk.editor.isChanged() && desk.editor.set().position() == 2);
                QVERIFY(desk.editor.edit({{u"Note"_s, u"y"_s}}).ok() && desk.editor.save().ok());
                QCOMPARE(desk.stored().constLast(), u"3|y"_s);
                QCOMPARE(desk.copies(), QStringList());
            }
            QVERIFY2(steps >= 10, "write, flush, rename, flush the folder, twice, and remove");
        }
    }

    /// What was damaged on the disk takes nothing's place, though the program still has the good page in memory.
    void damagedOnTheWay()
    {
        Desk desk;
        CopyEditor &editor = desk.editor;
        QVERIFY(desk.test.archives.copy(ArchiveName::Users, ArchiveName::UsersBackup).ok());
        const QString users = QStringView(ArchiveName::Users).toString();
        const QByteArray before = desk.test.read(users);
        desk.test.damage(u"Archivi/Anatmp.$$$"_s);
        QCOMPARE(codeOf(editor.save()), int(FaultCode::Damaged));
        QVERIFY(editor.set().recordCount() == 3 && editor.contains({{u"Codice"_s, u"3"_s}}));
        QCOMPARE(desk.test.read(users), before);

        QVERIFY(editor.open().ok() && editor.edit({{u"Note"_s, u"x"_s}}).ok());
        desk.test.damage(users);
        QVERIFY(editor.save().ok());
        QVERIFY(desk.stored().contains(u"1|x"_s) || desk.stored().contains(u"2|x"_s));
        QCOMPARE(desk.test.read(QStringView(ArchiveName::UsersBackup).toString()), before);
    }
};

QTEST_GUILESS_MAIN(TestCopyEditor)
#include "tst_copyeditor.moc"
