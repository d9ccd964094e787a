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
    QTest::addColumn<bool>("diskWorks");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QList<int>>("told");
    QTest::addColumn<int>("stored");
    QTest::addColumn<QStringList>("messages");
    const QStringList range = {u"Information: The minutes must be between 1 and 1440"_s};
    QTest::newRow("changed") << 60 << u"1a5"_s << true << true << Qt::Key_Return << QList{15} << 15 << QStringList();
    QTest::newRow("on") << 0 << u"2000"_s << true << true << Qt::Key_Enter << QList{1440} << 1440 << QStringList();
    QTest::newRow("off") << 60 << u"30"_s << false << true << Qt::Key_Return << QList{0} << 0 << QStringList();
    QTest::newRow("cancelled") << 60 << u"5"_s << true << true << Qt::Key_Escape << QList{-1} << 60 << QStringList();
    QTest::newRow("refused") << 60 << u"0"_s << true << true << Qt::Key_Return << QList<int>() << 60 << range;
    QTest::newRow("not saved") << 60 << u"7"_s << true << false << Qt::Key_Return << QList{7} << 60
                               << QStringList{notSaved.arg(u"CHECK"_s)};
}

void TestGuiPrefs::checkOutcome()
{
    QFETCH(int, before);
    QFETCH(QString, typed);
    QFETCH(bool, automatic);
    QFETCH(bool, diskWorks);
    QFETCH(Qt::Key, key);
    QFETCH(QList<int>, told);
    Desk desk;
    desk.settings.MinCheck = before;
    QPointer window = new frmTempochk(desk.texts, desk.settings, desk.messages);
    QList<int> heard;
    connect(window, &frmTempochk::ModificaMin, this, [&heard](int value) { heard.append(value); });
    auto *box = control<QLineEdit>(window, u"txtMinuti"_s);
    auto *check = control<QAbstractButton>(window, u"chkAutomatico"_s);
    QCOMPARE(box->text(), before > 0 ? QString::number(before) : QString());
    for (const bool shown : {before > 0, true, automatic}) {
        if (check->isChecked() != shown)
            check->click();
        QCOMPARE(box->isEnabled(), shown);
    }
    type(box, typed);
    desk.test.disk.stopAt = diskWorks ? -1 : 0;
    press(window, key);
    if (told.isEmpty()) {
        QTRY_VERIFY(!desk.messages.shown.isEmpty());
        QCOMPARE(window->focusWidget(), box);
        QCOMPARE(box->selectedText(), typed);
        window->unload();
    }
    QTRY_VERIFY(!window);
    QCOMPARE(heard, told);
    QTEST(desk.settings.LeggiImpostazione(u"CHECK"_s).toInt(), "stored");
    QTEST(desk.messages.take(), "messages");
}

void TestGuiPrefs::language_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<bool>("diskWorks");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("spoken");
    QTest::addColumn<QStringList>("messages");
    QTest::newRow("chosen") << Qt::Key_Return << true << u"4"_s << 4 << QStringList();
    QTest::newRow("cancelled") << Qt::Key_Escape << true << u"2"_s << 2 << QStringList();
    QTest::newRow("not saved") << Qt::Key_Return << false << u"2"_s << 4
                               << QStringList{u"Exclamation: Die Einstellung 'LINGUA' kann nicht gespeichert werden: "
                                              "Lese- oder Schreibfehler"_s};
}

void TestGuiPrefs::language()
{
    QFETCH(Qt::Key, key);
    QFETCH(bool, diskWorks);
    QFETCH(int, spoken);
    Desk desk;
    QPointer window = new frmLingua(desk.texts, desk.settings, desk.messages);
    QStringList captions;
    connect(window, &frmLingua::LinguaCambiata, this, [&] { captions.append(desk.texts[Text::Lingua]); });
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window));
    QVERIFY(control<QAbstractButton>(window, u"optLingua(1)"_s)->isChecked());
    QTest::keyClick(window->focusWidget(), Qt::Key_Down);
    QTest::keyClick(window->focusWidget(), Qt::Key_Down);
    desk.test.disk.stopAt = diskWorks ? -1 : 0;
    press(window, key);
    QTRY_VERIFY(!window);
    QTEST(desk.settings.LeggiImpostazione(u"LINGUA"_s), "stored");
    QCOMPARE(desk.settings.Lingua, spoken);
    QCOMPARE(desk.texts.language(), spoken);
    QCOMPARE(captions, spoken == 4 ? QStringList{u"Sprache"_s} : QStringList());
    QTEST(desk.messages.take(), "messages");
}

void TestGuiPrefs::askPassword_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("remove");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("code");
    QTest::newRow("right") << u"perch\u00E9"_s << false << Qt::Key_Return << 1;
    QTest::newRow("right but for trailing blanks") << u"perch\u00E9  "_s << false << Qt::Key_Return << 1;
    QTest::newRow("cannot be stored, so cannot be typed") << u"per\u0436ch\u00E9"_s << false << Qt::Key_Return << 1;
    QTest::newRow("cancelled") << u"perch\u00E9"_s << false << Qt::Key_Escape << 2;
    QTest::newRow("right, to remove it") << u"perch\u00E9"_s << true << Qt::Key_Return << 3;
    QTest::newRow("cancelled, to keep it") << QString() << true << Qt::Key_Escape << 4;
    QTest::newRow("without its accent") << u"perche"_s << false << Qt::Key_Return << 0;
    QTest::newRow("more than the ten that are stored") << u"perch\u00E9 perch\u00E9"_s << true << Qt::Key_Return << 0;
    QTest::newRow("nothing") << QString() << false << Qt::Key_Return << 0;
}

void TestGuiPrefs::askPassword()
{
    QFETCH(QString, typed);
    QFETCH(bool, remove);
    QFETCH(Qt::Key, key);
    QFETCH(int, code);
    Desk desk;
    QCOMPARE(desk.passwords.set(Passwords::Type::Users, u"perch\u00E9"_s), Passwords::Fault::None);
    QPointer window = new frmPassProg(desk.texts, desk.messages, desk.passwords);
    window->DisattivaPW = remove;
    window->setTipoPass(Passwords::Type::Users);
    QCOMPARE(window->windowTitle(), u"User Password"_s);
    QList<std::pair<int, int>> heard;
    connect(window, &frmPassProg::Chiudi, this, [&heard](int type, int value) { heard.append({type, value}); });
    QSignalSpy refused(window, &ChildWindow::closeRefused);
    window->show();
    QVERIFY(!window->close());
    QVERIFY(window->isVisible() && heard.isEmpty());
    QCOMPARE(refused.count(), 1);
    auto *box = control<QLineEdit>(window, u"txtPass"_s);
    type(box, typed);
    press(window, key);
    if (code == 0) {
        QTRY_COMPARE(desk.messages.shown.size(), 1);
        QCOMPARE(desk.messages.take(), QStringList{u"Critical: Wrong password!"_s});
        QCOMPARE(window->focusWidget(), box);
        QCOMPARE(box->selectionLength(), typed.size());
        QVERIFY(heard.isEmpty() && window->isVisible());
        return window->unload();
    }
    QTRY_VERIFY(!window);
    QCOMPARE(heard, (QList<std::pair<int, int>>{{2, code}}));
}

void TestGuiPrefs::setPassword_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("again");
    QTest::addColumn<QString>("afterwards");
    QTest::addColumn<QStringList>("messages");
    const QStringList typing = {u"Exclamation: Attention! A password typing error has occured"_s};
    QTest::newRow("set") << u"perch\u00E9"_s << u"perch\u00E9"_s << u"perch\u00E9"_s << QStringList();
    QTest::newRow("its first ten") << u"0123456789AB"_s << u"0123456789AB"_s << u"0123456789"_s << QStringList();
    QTest::newRow("none") << QString() << QString() << QString() << QStringList();
    QTest::newRow("not the same") << u"a"_s << u"A"_s << u"old"_s << typing;
    QTest::newRow("not the same past ten") << u"0123456789A"_s << u"0123456789B"_s << u"old"_s << typing;
}

void TestGuiPrefs::setPassword()
{
    QFETCH(QString, first);
    QFETCH(QString, again);
    QFETCH(QString, afterwards);
    QFETCH(QStringList, messages);
    Desk desk;
    QCOMPARE(desk.passwords.set(Passwords::Type::Diagnostics, u"old"_s), Passwords::Fault::None);
    QPointer window = new frmInsPass(desk.texts, desk.messages, desk.passwords);
    window->setTipoPass(Passwords::Type::Diagnostics);
    QList<int> heard;
    connect(window, &frmInsPass::PasswordImpostata, this, [&heard](int type) { heard.append(type); });
    auto *box = control<QLineEdit>(window, u"txtPass"_s);
    type(box, first);
    type(control<QLineEdit>(window, u"txtConfPass"_s), again);
    press(window, Qt::Key_Return);
    if (!messages.isEmpty()) {
        QTRY_VERIFY(!desk.messages.shown.isEmpty());
        QCOMPARE(window->focusWidget(), box);
        QCOMPARE(box->selectedText().size(), first.size());
        click(window, u"cmdAnnulla"_s);
    }
    QTRY_VERIFY(!window);
    QCOMPARE(desk.messages.take(), messages);
    QCOMPARE(heard, messages.isEmpty() ? QList{3} : QList<int>());
    QCOMPARE(desk.passwords.load(), Passwords::Fault::None);
    QVERIFY(desk.passwords.matches(Passwords::Type::Diagnostics, afterwards));
    QVERIFY(!desk.passwords.isSet(Passwords::Type::Main));
}

void TestGuiPrefs::passwordNotStored()
{
    Desk desk;
    frmInsPass window(desk.texts, desk.messages, desk.passwords);
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.show();
    QSignalSpy stored(&window, &frmInsPass::PasswordImpostata);
    type(control<QLineEdit>(&window, u"txtPass"_s), u"abc"_s);
    type(control<QLineEdit>(&window, u"txtConfPass"_s), u"abc"_s);
    {
        Result<Database> other = desk.test.archives.open(ArchiveName::Users, Database::Use::Safe);
        QVERIFY(other.value().execute("BEGIN EXCLUSIVE").ok());
        click(&window, u"cmdOk"_s);
        QVERIFY(other.value().execute("DELETE FROM Password").ok());
        QVERIFY(other.value().execute("COMMIT").ok());
    }
    click(&window, u"cmdOk"_s);
    QVERIFY(QFile::remove(desk.test.folder.path(QStringView(ArchiveName::Users).toString())));
    click(&window, u"cmdOk"_s);
    QCOMPARE(desk.messages.take(),
             (QStringList{
                 u"Critical: The users register 'Archivi/Anagrafico.zeb' cannot be read: locked by another program"_s,
                 u"Critical: Corrupt File Password!"_s, u"Critical: "_s + desk.texts[Text::FileMancanteODanneggiato]}));
    QCOMPARE(stored.count(), 0);
    QVERIFY(window.isVisible() && !desk.passwords.isSet(Passwords::Type::Main));
    QCOMPARE(control<QLineEdit>(&window, u"txtConfPass"_s)->text(), u"abc"_s);
}

void TestGuiPrefs::noManual_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("missing") << QByteArray();
    QTest::newRow("no manual") << QByteArray("a text of somebody");
    QTest::newRow("cut short") << QByteArray("%PDF-1.4\n1 0 obj\n");
}

void TestGuiPrefs::noManual()
{
    QFETCH(QByteArray, content);
    Desk desk;
    if (!content.isEmpty())
        desk.test.write(u"mansw.pdf"_s, content);
    QPointer window = new frmIstruzioni(u"&Manual"_s, desk.test.folder.path(u"mansw.pdf"_s), desk.texts, desk.messages);
    QVERIFY(!window->load());
    QTRY_VERIFY(!window);
    QCOMPARE(desk.messages.take(), QStringList{u"Critical: file not found"_s});
}

void TestGuiPrefs::manual()
{
    Desk desk;
    const QString file = desk.test.folder.path(u"manuale \u00E8.pdf"_s);
    {
        QPdfWriter writer(file);
        QPainter painter(&writer);
        for (int page = 0; page < 3; ++page) {
            if (page > 0)
                writer.newPage();
            painter.drawText(500, 500, QString::number(page));
        }
    }
    frmIstruzioni window(u"KOR &731"_s, file, desk.texts, desk.messages);
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    QVERIFY(window.load());
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QCOMPARE(window.windowTitle(), u"KOR 731"_s);
    auto *view = control<QPdfView>(&window, u"ReadPdf"_s);
    QScrollBar *bar = view->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 0);
    const auto keyed = [&](Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier) {
        QTest::keyClick(window.focusWidget(), key, with);
        return bar->value();
    };
    const int onePage = keyed(Qt::Key_PageDown);
    QVERIFY(onePage > 0);
    QCOMPARE(keyed(Qt::Key_End), bar->maximum());
    QVERIFY(keyed(Qt::Key_PageUp) < bar->maximum());
    QCOMPARE(keyed(Qt::Key_Home), 0);
    const int fitted = bar->maximum();
    keyed(Qt::Key_End);
    const int place = keyed(Qt::Key_Plus, Qt::ControlModifier);
    QVERIFY(bar->maximum() > fitted);
    QCOMPARE(place, bar->maximum());
    click(&window, u"cmdZoomMeno"_s);
    click(&window, u"cmdZoomMeno"_s);
    QVERIFY(bar->maximum() < fitted);
    keyed(Qt::Key_0, Qt::ControlModifier);
    QCOMPARE(bar->maximum(), fitted);
}

/// In the main window too the first control of each window has the keyboard, and Esc closes it.
void TestGuiPrefs::keyboardInTheFrame()
{
    Desk desk;
    QMdiArea area;
    area.show();
    QVERIFY(QTest::qWaitForWindowActive(&area));
    const QList<std::pair<ChildWindow *, QString>> windows = {
        {new frmTempochk(desk.texts, desk.settings, desk.messages), u"chkAutomatico"_s},
        {new frmLingua(desk.texts, desk.settings, desk.messages), u"optLingua(1)"_s},
        {new frmInsPass(desk.texts, desk.messages, desk.passwords), u"txtPass"_s},
        {new frmInfo(desk.texts, {}), u"cmdOk"_s},
        {new frmMessage(desk.texts, {}), u"cmdOk"_s},
    };
    for (const auto &[window, first] : windows) {
        area.addSubWindow(window)->show();
        QTRY_VERIFY(QApplication::focusWidget() && window->isAncestorOf(QApplication::focusWidget()));
        QCOMPARE(QApplication::focusWidget()->objectName(), first);
        QSignalSpy unloaded(window, &ChildWindow::unloaded);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        QTRY_COMPARE(unloaded.count(), 1);
    }
}

QTEST_MAIN(TestGuiPrefs)
#include "tst_gui_prefs.moc"
