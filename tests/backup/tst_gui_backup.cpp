#include "backup/DailyBackup.h"
#include "backup/frmBackup.h"
#include "support/Windows.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QPointer>
#include <QProgressBar>
#include <QTimeEdit>

namespace {

struct Desk : Office {
    Desk()
    {
        test.addUsers({{u"1"_s, u"TX"_s}});
        test.addEvents(u"05-03-2004"_s, {{u"1"_s, u"TX"_s, u"A"_s, u""_s, u""_s, u"08:00:00"_s}});
        if (!settings.CreaImpostazioni(2))
            qFatal("no settings");
    }
    ~Desk()
    {
        if (window)
            window->unload();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    template<class Control>
    Control *get(const char *name)
    {
        return window->findChild<Control *>(QString::fromLatin1(name));
    }
    void type(const QString &folder) { get<QLineEdit>("txtFolder")->setText(folder); }
    void click(const char *name) { get<QAbstractButton>(name)->click(); }
    QString state() { return get<QLabel>("lblState")->text(); }

    QTemporaryDir target;
    DailyBackup backup{test.archives, settings, clock};
    QPointer<frmBackup> window = new frmBackup(texts, backup, messages);
};

} // namespace

class TestGuiBackup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void copiesAndTellsHowFar()
    {
        Desk desk;
        QCOMPARE(desk.get<QLabel>("lblLast")->text(), u"Last successful copy: none"_s);
        desk.type(desk.target.path());
        QStringList seen;
        connect(&desk.backup, &DailyBackup::progressed, desk.window, [&] { seen.append(desk.state()); });
        desk.click("cmdNow");
        QVERIFY(!desk.get<QPushButton>("cmdNow")->isEnabled() && desk.get<QPushButton>("cmdStop")->isEnabled());
        QTRY_VERIFY(desk.state().startsWith(u"All is copied"));
        QCOMPARE(desk.get<QProgressBar>("prgBackup")->text(), u"100%"_s);
        QCOMPARE(desk.get<QLabel>("lblLast")->text(), u"Last successful copy: 05/03/2004 07:45:00"_s);
        QVERIFY(QFile::exists(desk.target.filePath(u"Archivi/Eventi_05-03-2004.zeb"_s)));
        desk.click("cmdNow");
        desk.click("cmdStop");
        QVERIFY(desk.state().startsWith(u"Stopped") && !desk.backup.isRunning());
        desk.click("cmdChiudi");
        QTRY_VERIFY(!desk.window);
    }

    void refuses_data()
    {
        const Rows<QString, QString> row("folder", "message");
        row("none", {}, u"Exclamation: Choose the folder of the backup copy."_s);
        row("not there", u"/nowhere"_s, u"Exclamation: The backup copy in '/nowhere' cannot be made: does not exist"_s);
        row("its own", u"*/Archivi"_s,
            u"Exclamation: The backup copy in '*/Archivi' cannot be made: it is the program folder or lies in it"_s);
    }
    void refuses()
    {
        QFETCH(QString, folder);
        QFETCH(QString, message);
        Desk desk;
        desk.type(folder.replace(u"*"_s, desk.test.directory.path()));
        desk.get<QCheckBox>("chkDaily")->setChecked(true);
        desk.click("cmdNow");
        message.replace(u"*"_s, desk.test.directory.path());
        QCOMPARE(desk.messages.take(), QStringList{message});
        QVERIFY(!desk.backup.isRunning());
        // It is said once more, and the operator may leave all the same.
        desk.messages.answers = {Messages::Answer::No, Messages::Answer::Yes};
        desk.click("cmdChiudi");
        QCOMPARE(desk.messages.take(), QStringList{message.replace(u"Exclamation"_s, u"Question"_s) + u"\r\n"_s +
                                                   desk.texts[Text::TuttiICambiamentiVerrannoAnnullati]});
        QTRY_COMPARE(desk.messages.standing, 0);
        QVERIFY(desk.window && desk.window->isEnabled());
        desk.click("cmdChiudi");
        QTRY_VERIFY(!desk.window);
        QVERIFY(desk.messages.take().size() == 1 && !BackupPlan::from(desk.settings).isDaily);
    }

    void closingKeepsThePlan()
    {
        Desk desk;
        desk.click("cmdFolder");
        auto *dialog = desk.window->findChild<QFileDialog *>(u"ComDial"_s);
        QVERIFY(dialog);
        Q_EMIT dialog->fileSelected(desk.target.path());
        desk.get<QCheckBox>("chkDaily")->setChecked(true);
        desk.get<QTimeEdit>("txtTime")->setTime(QTime(23, 30));
        desk.click("cmdChiudi");
        QTRY_VERIFY(!desk.window);
        const BackupPlan plan = BackupPlan::from(desk.settings);
        QCOMPARE(plan.folder, desk.target.path());
        QVERIFY(plan.isDaily && plan.at == QTime(23, 30));
    }

    void targetThatGoesIsToldInOneSentence()
    {
        Desk desk;
        const QString target = desk.target.path();
        desk.type(target);
        desk.click("cmdNow");
        QVERIFY(desk.target.remove());
        QTRY_VERIFY(!desk.backup.isRunning());
        QCOMPARE(desk.messages.take(),
                 QStringList{u"Exclamation: The backup copy in '%1' cannot be made: does not exist"_s.arg(target)});
        QVERIFY(desk.get<QPushButton>("cmdNow")->isEnabled());
    }
};

QTEST_MAIN(TestGuiBackup)
#include "tst_gui_backup.moc"
