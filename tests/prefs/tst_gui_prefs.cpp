#include "archives/Tables.h"
#include "prefs/CheckInterval.h"
#include "prefs/frmInfo.h"
#include "prefs/frmInsPass.h"
#include "prefs/frmIstruzioni.h"
#include "prefs/frmLingua.h"
#include "prefs/frmMessage.h"
#include "prefs/frmPassProg.h"
#include "prefs/frmTempochk.h"
#include "startup/Settings.h"
#include "support/FakeMessages.h"
#include "support/Fixtures.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPainter>
#include <QPdfView>
#include <QPdfWriter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

namespace {

/// What the windows stand on: settings and an empty register in a folder of their own, English texts.
struct Desk {
    Desk()
    {
        texts.fill(2);
        if (!settings.CreaImpostazioni(2) || !settings.read(2, notices) ||
            !test.archives.copy(ArchiveName::UsersTemplate, ArchiveName::Users) ||
            passwords.load() != Passwords::Fault::None)
            qFatal("the folder cannot be prepared");
    }
    void breakDisk() { test.disk.stopAt = 0; }
    QByteArray stored() const { return test.read(u"Impost.stp"_s); }

    TestFolder test;
    FakePrinters printers;
    Notices notices;
    Texts texts;
    Settings settings{test.folder, printers};
    Passwords passwords{test.archives};
    FakeMessages messages;
};

template<class T>
T *control(QWidget *window, const QString &name)
{
    return window->findChild<T *>(name);
}

void click(QWidget *window, const QString &name)
{
    QTest::mouseClick(control<QAbstractButton>(window, name), Qt::LeftButton);
}

/// Types as a keyboard with dead keys does: each character arrives composed.
void type(QLineEdit *edit, const QString &text)
{
    edit->clear();
    for (const QChar character : text) {
        QInputMethodEvent event;
        event.setCommitString(character);
        QCoreApplication::sendEvent(edit, &event);
    }
}

/// Presses a key wherever the keyboard is.
void press(QWidget *window, Qt::Key key)
{
    window->show();
    QTest::keyClick(window->focusWidget(), key);
}

const QString notSaved = u"Exclamation: The setting '%1' cannot be saved: read or write error"_s;

} // namespace

class TestGuiPrefs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void minutes_data();
    void minutes();
    void checkOutcome_data();
    void checkOutcome();
    void language_data();
    void language();
    void askPassword_data();
    void askPassword();
    void setPassword_data();
    void setPassword();
    void passwordNotStored();
    void noManual_data();
    void noManual();
    void manual();
    void keyboardInTheFrame();
};

void TestGuiPrefs::minutes_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("kept");
    QTest::addColumn<int>("interval");
    QTest::newRow("longest") << u"1440"_s << u"1440"_s << 1440;
    QTest::newRow("longer than a day") << u"2000"_s << u"1440"_s << 1440;
    QTest::newRow("longer than any number") << QString(400, u'9') << u"1440"_s << 1440;
    QTest::newRow("signs and letters") << u"-1x,5"_s << u"15"_s << 15;
    QTest::newRow("digits of another script") << u"\u0661\u0662"_s << QString() << -1;
    QTest::newRow("zero") << u"00"_s << u"00"_s << -1;
    QTest::newRow("nothing") << QString() << QString() << -1;
}

void TestGuiPrefs::minutes()
{
    QFETCH(QString, typed);
    QTEST(acceptedMinutes(typed), "kept");
    QTEST(checkInterval(true, acceptedMinutes(typed)).value_or(-1), "interval");
    QCOMPARE(checkInterval(false, typed), std::optional<int>(0));
}

void TestGuiPrefs::checkOutcome_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("automatic");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QList<QVariantList>>("told");
    QTest::addColumn<int>("stored");
    QTest::newRow("changed") << 60 << u"1a5"_s << true << Qt::Key_Return << QList<QVariantList>{{15}} << 15;
    QTest::newRow("switched on") << 0 << u"2000"_s << true << Qt::Key_Enter << QList<QVariantList>{{1440}} << 1440;
    QTest::newRow("switched off") << 60 << u"30"_s << false << Qt::Key_Return << QList<QVariantList>{{0}} << 0;
    QTest::newRow("cancelled") << 60 << u"5"_s << true << Qt::Key_Escape << QList<QVariantList>{{-1}} << 60;
    QTest::newRow("refused") << 60 << u"0"_s << true << Qt::Key_Return << QList<QVariantList>() << 60;
    QTest::newRow("not saved") << 60 << u"7"_s << true << Qt::Key_Return << QList<QVariantList>{{7}} << 60;
}

void TestGuiPrefs::checkOutcome()
{
    QFETCH(int, before);
    QFETCH(QString, typed);
    QFETCH(bool, automatic);
    QFETCH(Qt::Key, key);
    Desk desk;
    desk.settings.MinCheck = before;
    QPointer window = new frmTempochk(desk.texts, desk.settings, desk.messages);
    QSignalSpy told(window, &frmTempochk::ModificaMin);
    auto *box = control<QLineEdit>(window, u"txtMinuti"_s);
    auto *check = control<QAbstractButton>(window, u"chkAutomatico"_s);
    QCOMPARE(box->text(), before > 0 ? QString::number(before) : QString());
    for (const bool shown : {before > 0, true, automatic}) {
        if (check->isChecked() != shown)
            check->click();
        QCOMPARE(box->isEnabled(), shown);
        if (shown)
            type(box, typed);
    }
    if (QTest::currentDataTag() == "not saved"_ba)
        desk.breakDisk();
    press(window, key);
    if (QTest::currentDataTag() == "refused"_ba) {
        QTRY_COMPARE(desk.messages.take(), QStringList{u"Information: The minutes must be between 1 and 1440"_s});
        QCOMPARE(window->focusWidget(), box);
        QCOMPARE(box->selectedText(), typed);
        window->unload();
    }
    QTRY_VERIFY(!window);
    if (QTest::currentDataTag() == "not saved"_ba)
        QCOMPARE(desk.messages.take(), QStringList{notSaved.arg(u"CHECK"_s)});
    QTEST(told, "told");
    QTEST(desk.settings.LeggiImpostazione(u"CHECK"_s).toInt(), "stored");
}
