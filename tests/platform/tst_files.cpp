#include "platform/FreshFile.h"
#include "support/Fixtures.h"

#include <QDir>

#include <sys/stat.h>

namespace {

/// Makes "new" the content of a file.
using Save = std::function<Result<void>(BareFolder &, const QString &path)>;

} // namespace

class TestFiles : public QObject
{
    Q_OBJECT

private:
    static void ways()
    {
        const Rows<Save> row("save");
        row("streamed", [](BareFolder &test, const QString &path) {
            FreshFile file(test.disk, path);
            Result<void> done = file.create();
            if (done)
                done = file.write("new") == 3 ? file.commit() : Result<void>(file.fault());
            return done;
        });
        row("replaced",
            [](BareFolder &test, const QString &path) { return test.disk.replaceContent(path, "new", u"beside"_s); });
        row("copied", [](BareFolder &test, const QString &path) {
            test.write(u"source"_s, "new");
            const Result<void> done = test.disk.copy(test.folder.path(u"source"_s), path);
            QFile::remove(test.folder.path(u"source"_s));
            return done;
        });
    }

private Q_SLOTS:
    void failingStepLeavesOldOrNew_data() { ways(); }
    void failingStepLeavesOldOrNew()
    {
        QFETCH(Save, save);
        for (int stop = 0; stop <= 4; ++stop) {
            BareFolder test;
            test.write(u"target"_s, "old");
            test.disk.stopAt = stop;
            test.disk.goesOn = true;
            QCOMPARE(codeOf(save(test, test.folder.path(u"target"_s))), stop < 4 ? int(FaultCode::InputOutput) : -1);
            QCOMPARE(test.read(u"target"_s), stop < 3 ? "old" : "new");
            QCOMPARE(test.files(), listOf("target"));
            // Nothing takes a name before it is on the device, and the name is there as well in the end.
            QStringList steps = test.disk.steps.replaceInStrings(QRegularExpression(u" [^ ]*$"_s), {});
            QCOMPARE(steps, listOf("write,flush,rename,flush folder").mid(0, stop));
        }
    }

    /// A link is followed and stays; what is no file is left alone, and so is what has the name beside it.
    void whatStandsThere_data() { ways(); }
    void whatStandsThere()
    {
        QFETCH(Save, save);
        BareFolder test, share;
        share.write(u"far"_s, "old");
        share.write(u"kept"_s, "kept");
        QFile::link(share.folder.path(u"far"_s), test.folder.path(u"link"_s));
        QFile::link(share.folder.path(u"none"_s), test.folder.path(u"lost"_s));
        for (const QString &planted : listOf("beside,far.part"))
            QFile::link(share.folder.path(u"kept"_s), share.folder.path(planted));
        QDir(test.directory.path()).mkdir(u"folder"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(test.directory.filePath(u"pipe"_s)).constData(), 0600), 0);
        QList<int> says;
        for (const QString &name : listOf("file,link,lost,pipe,folder,none/file"))
            says.append(codeOf(save(test, test.directory.filePath(name))));
        const int none = int(FaultCode::NotFound), noFile = int(FaultCode::NotRegularFile);
        QCOMPARE(says, QList({-1, -1, none, noFile, noFile, none}));
        QVERIFY(QFileInfo(test.folder.path(u"link"_s)).isSymLink());
        QCOMPARE(share.read(u"far"_s) + share.read(u"kept"_s), "newkept");
        QCOMPARE(test.folder.lostTarget(u"lost"_s), share.folder.path(u"none"_s));
        QVERIFY(test.folder.fileToOpen(u"pipe"_s).isEmpty() && test.folder.fileToOpen(u"folder"_s).isEmpty());
    }

    /// A file that is streamed keeps the rights of the one before; given up, it leaves no trace.
    void streamed()
    {
        BareFolder test;
        test.write(u"target"_s, "old");
        const QString path = test.folder.path(u"target"_s);
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0640), 0);
        {
            FreshFile given(test.disk, path);
            QVERIFY(given.create().ok() && given.write("given up") > 0);
            QCOMPARE(test.files().size(), 2);
        }
        QCOMPARE(test.files(), listOf("target"));
        FreshFile file(test.disk, path);
        QVERIFY(file.create().ok() && file.write(QByteArray(3 << 20, 'x')) > 0 && file.seek(1) && file.write("y") == 1);
        while (!file.settle()) {
        }
        QVERIFY(file.commit().ok() && test.read(u"target"_s) == "xy" + QByteArray((3 << 20) - 2, 'x'));
        struct stat status = {};
        QCOMPARE(::stat(QFile::encodeName(path).constData(), &status), 0);
        QCOMPARE(status.st_mode & ALLPERMS, 0640U);
    }

    void namesWithoutRegardToCase()
    {
        BareFolder test;
        QDir(test.directory.path()).mkdir(u"ARCHIVI"_s);
        const QString name = u"Archivi/Eventi_05-03-2004.zeb"_s;
        test.write(u"Archivi/EVENTI_05-03-2004.ZEB"_s, "x");
        QVERIFY(test.folder.exists(name.toLower()) && test.folder.isFolder(u"archivi"_s));
        QCOMPARE(test.read(name), "x");
        // Removed and made again by another program: the kept listing must notice.
        QVERIFY(QFile::remove(test.folder.path(name)) && !test.folder.exists(name));
        test.write(u"Archivi/eventi_05-03-2004.ZEB"_s, "x");
        QVERIFY(test.folder.path(name).endsWith(u"/ARCHIVI/eventi_05-03-2004.ZEB"_s));
    }

    void oneProgramHoldsAFolder()
    {
        const BareFolder test, other;
        const QString link = other.folder.path(u"link"_s);
        QVERIFY(QFile::link(test.directory.path(), link));
        FolderLock second;
        {
            FolderLock first;
            QVERIFY(first.take(test.directory.path()) && first.take(other.directory.path()));
            QCOMPARE(codeOf(second.take(link)), int(FaultCode::AlreadyInUse));
        }
        QCOMPARE(codeOf(second.take(link)), -1);
        QCOMPARE(codeOf(second.take(other.folder.path(u"none"_s))), int(FaultCode::NotFound));
    }
};

QTEST_GUILESS_MAIN(TestFiles)
#include "tst_files.moc"
