#include "events/frmEventi.h"
#include "events/frmEventiOdierni.h"
#include "support/Windows.h"
#include "support/Workbooks.h"
#include "texts/OwnText.h"
#include "widgets/UserCombo.h"
#include "widgets/frmRicercapr.h"

#include <QCheckBox>
#include <QFileDialog>

namespace {

/// Two who share a surname, one without a surname, one without a first name.
const QList<QStringList> people = {listOf("1,TX,Rossi,Mario"),
                                   listOf("2,TX,Rossi,Anna"),
                                   {u"3"_s, u"DKS"_s, {}, u"Zo\u00EB"_s},
                                   {u"4"_s, u"TX"_s, u"\u00C4del"_s, {}}};

struct SearchDesk : Office {
    SearchDesk()
    {
        test.addUsers(people);
        form = new frmEventi(texts, messages, test.archives, clock, printer, journal);
        if (!form->open())
            qFatal("the window does not open");
        form->show();
        form->activateWindow();
        QApplication::setActiveWindow(form);
    }
    ~SearchDesk() { delete form; }

    QLineEdit *edit(const char *name) { return control<QLineEdit>(form, QString::fromLatin1(name)); }
    UserCombo *surname() { return control<UserCombo>(form, u"dbcmbCognome"_s); }
    UserCombo *firstName() { return control<UserCombo>(form, u"dbcmbNome"_s); }
    QTableView *grid() { return control<QTableView>(form, u"dbgrdDati"_s); }
    void press(const char *button) { control(form, QString::fromLatin1(button))->click(); }
    void search()
    {
        press("cmdRicerca");
        QTRY_VERIFY(canSearch());
    }
    bool canSearch() const { return control(form, u"cmdRicerca"_s)->isEnabled(); }

    QPointer<frmEventi> form;
};

/// Types over what stands there; keys of a test know no accents.
void type(UserCombo *combo, const QString &text)
{
    combo->lineEdit()->selectAll();
    combo->lineEdit()->insert(text);
}

} // namespace

class TestEvents : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Folded at first; a bar is told in words and leads to its first row, by key and by pointer.
    void histogram()
    {
        SearchDesk desk;
        QList<QStringList> events(300, {u"1"_s, u"TX"_s, u"A"_s, {}, {}, u"08:00:00"_s});
        events += QList<QStringList>(2, {u"1"_s, u"TX"_s, u"A"_s, u"X"_s, {}, u"23:59:59"_s});
        desk.test.addEvents(u"05-03-2004"_s, events);
        auto *bars = control<QWidget>(desk.form, u"Istogramma"_s);
        desk.search();
        QVERIFY(bars->isHidden() && bars->accessibleDescription().isEmpty());
        QVERIFY(control(desk.form, u"cmdIstogramma"_s)->accessibleName() == u"Events by hour"_s);
        desk.press("cmdIstogramma");
        QTRY_VERIFY(bars->isVisible() && bars->width() > 100);
        QVERIFY(control<QWidget>(desk.form, u"cmdIstogramma"_s)->nextInFocusChain() == bars);
        QCOMPARE(bars->accessibleDescription(), u"05/03/2004 08:00 - 08:59: 300 enabled, 0 disabled"_s);
        QTest::keyClick(bars, Qt::Key_Right);
        QCOMPARE(bars->accessibleDescription(), u"05/03/2004 23:00 - 23:59: 0 enabled, 2 disabled"_s);
        QTest::keyClick(bars, Qt::Key_Return);
        QCOMPARE(desk.grid()->currentIndex().row(), 300);
        QTest::mouseClick(bars, Qt::LeftButton, {}, {bars->width() / 4, bars->height() / 2});
        QCOMPARE(desk.grid()->currentIndex().row(), 300); // nothing was at 06:00
        QTest::mouseClick(bars, Qt::LeftButton, {}, {bars->width() * 17 / 48, bars->height() / 2});
        QCOMPARE(desk.grid()->currentIndex().row(), 0);
        desk.edit("txtDataOrig")->setText(u"03/03/2004"_s);
        desk.search();
        QCOMPARE(bars->accessibleDescription(), u"05/03/2004: 300 enabled, 2 disabled"_s);
    }

    /// The box that is wrong gets the keyboard, with all its text; which rules there are is tested with the search.
    void refusals()
    {
        SearchDesk desk;
        const auto press = [&desk] {
            desk.press("cmdRicerca");
            return desk.messages.take().join(u'|');
        };
        desk.edit("txtDataFine")->setText(u"04/03/2004"_s);
        QCOMPARE(press(), u"Exclamation: The starting date must come before the finishing date!"_s);
        QCOMPARE(desk.form->focusWidget(), desk.edit("txtDataOrig"));
        QCOMPARE(desk.edit("txtDataOrig")->selectedText(), u"05/03/2004"_s);
        desk.edit("txtOraIn")->setText(u"24:00:00"_s);
        QCOMPARE(press(), u"Exclamation:  Incorrect time format! (hh:mm:ss)"_s);
        QCOMPARE(desk.form->focusWidget(), desk.edit("txtOraIn"));
        desk.edit("txtDataFine")->setText(u"05/03/2004"_s);
        desk.edit("txtOraIn")->setText(u"00:00:00"_s);
        for (UserCombo *combo : {desk.surname(), desk.firstName()}) {
            type(combo, combo == desk.surname() ? u"Verdi"_s : u"Zo\u00EB"_s);
            QCOMPARE(press(), u"Exclamation: Code or name is not in the data file!"_s);
        }
        QVERIFY(!desk.form->findChild<frmRicercapr *>());
    }

    void combosFollowEachOther()
    {
        SearchDesk desk;
        const auto shown = [&desk] { return desk.surname()->currentText() + u'/' + desk.firstName()->currentText(); };
        QStringList listed;
        for (int i = 0; i < desk.surname()->count(); ++i)
            listed.append(desk.surname()->itemText(i));
        QCOMPARE(listed, QStringList({u"\u00C4del"_s, u"Rossi"_s, u"Rossi"_s}));
        desk.edit("txtCodice")->setText(u"1x2"_s);
        QCOMPARE(desk.edit("txtCodice")->text(), u"12"_s);
        // The second of the two, from the list.
        desk.surname()->setFocus();
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(desk.surname(), Qt::Key_Down);
        QCOMPARE(shown() + desk.edit("txtCodice")->text(), u"Rossi/Anna"_s);
        QTest::keyClick(desk.surname(), Qt::Key_Return); // searches, and leaves the person as he is
        QTRY_COMPARE(desk.messages.shown.size(), 1);
        QCOMPARE(desk.messages.take(), QStringList(u"Information: No events found!"_s));
        desk.edit("txtOraIn")->setFocus();
        QCOMPARE(shown(), u"Rossi/Anna"_s);
        QTest::keyClick(desk.surname(), Qt::Key_Up);
        QCOMPARE(shown(), u"Rossi/Mario"_s);
        // Typed without the accent, and a person who has no first name.
        type(desk.surname(), u"adel"_s);
        QVERIFY(desk.firstName()->currentText().isEmpty() && desk.surname()->shown() == std::optional<qint64>(3));
        type(desk.firstName(), u"Anna"_s);
        QVERIFY(shown() == u"Rossi/Anna" && desk.surname()->shown() == std::optional<qint64>(1));
        // Who has no surname leaves none of somebody else's.
        QTest::keyClicks(desk.firstName(), u"zo"_s);
        QCOMPARE(desk.surname()->currentText(), QString());
        desk.edit("txtCodice")->setText(u"7"_s);
        QCOMPARE(shown(), u"/"_s);
    }

    void searchAndStop()
    {
        SearchDesk desk;
        desk.search();
        QCOMPARE(desk.messages.take(), QStringList(u"Information: No events found!"_s));
        QList<QStringList> events(3000, {u"1"_s, u"TX"_s, u"A"_s, {}, {}, u"10:00:00"_s});
        events.prepend({u"2"_s, u"TX"_s, u"B"_s, u"X"_s, {}, u"09:00:00"_s});
        desk.test.addEvents(u"05-03-2004"_s, events);
        type(desk.surname(), u"Rossi"_s);
        desk.surname()->setFocus();
        QTest::keyClick(desk.surname(), Qt::Key_Down);
        desk.search();
        QCOMPARE(desk.grid()->model()->rowCount(), 1);
        QCOMPARE(cells(desk.grid(), 0), u"Rossi|Anna|TX|B|X|05-03-2004|09:00:00|"_s);
        const auto spoken = [&](int column) {
            return desk.grid()->model()->index(0, column).data(Qt::AccessibleTextRole).toString();
        };
        QCOMPARE(spoken(4) + spoken(7), desk.texts[OwnText::Marked] + desk.texts[OwnText::NotMarked]);
        QVERIFY(desk.grid()->currentIndex().isValid());
        const auto *found = control<QLabel>(desk.form, u"lblTrovati"_s);
        QCOMPARE(found->text() + u'|' + desk.grid()->accessibleDescription(), u"Events found: 1|Events found: 1"_s);

        desk.edit("txtCodice")->setText(u"1"_s);
        // Enter, and a click before its animation has ended.
        QTest::keyClick(desk.edit("txtCodice"), Qt::Key_Return);
        desk.press("cmdRicerca");
        bool isTwice = false;
        QVERIFY(QTest::qWaitFor([&] {
            isTwice |= desk.form->findChildren<frmRicercapr *>().size() > 1;
            return desk.canSearch();
        }));
        QVERIFY(!isTwice);
        desk.press("cmdRicerca");
        auto *progress = control<frmRicercapr>(desk.form, u"frmRicercapr"_s);
        QCOMPARE(control<QLabel>(progress, u"lblGiorno"_s)->text(), u"Day: 05/03/2004"_s);
        QTest::keyClick(progress, Qt::Key_Return); // one too many
        QVERIFY(!desk.canSearch());
        QTest::keyClick(progress, Qt::Key_Escape);
        QTRY_VERIFY(desk.canSearch());
        QTRY_VERIFY(!desk.form->findChild<frmRicercapr *>());
        const int before = desk.grid()->model()->rowCount();
        QVERIFY(before < 3000);
        // Stopped before the first: nobody knows whether there is one.
        QCOMPARE(found->text(), before > 0 ? u"Events found: %1"_s.arg(before) : QString());
        // A refused search leaves the results alone.
        desk.search();
        QCOMPARE(desk.grid()->model()->rowCount(), 3000);
        control<QCheckBox>(desk.form, u"chkTipo(0)"_s)->setChecked(false);
        control<QCheckBox>(desk.form, u"chkTipo(1)"_s)->setChecked(false);
        desk.press("cmdRicerca");
        QCOMPARE(desk.messages.take(), QStringList(u"Exclamation: Choose at least one type (TX or DKS)!"_s));
        QCOMPARE(desk.grid()->model()->rowCount(), 3000);
    }

    void unreadDayIsTold()
    {
        SearchDesk desk;
        desk.test.write(u"Archivi/Eventi_05-03-2004.zeb"_s, "no archive");
        desk.test.write(u"Archivi/Eventi_04-03-2004.zeb.guasto"_s, "set aside");
        desk.edit("txtDataOrig")->setText(u"04/03/2004"_s);
        desk.search();
        QCoreApplication::processEvents(); // nothing follows
        QCOMPARE(desk.messages.take(),
                 QStringList{u"Exclamation: The archives of these days cannot be read: 05/03/2004\n"
                             "The events of these days are incomplete: 04/03/2004"_s});
        QCOMPARE(control<QLabel>(desk.form, u"lblTrovati"_s)->text(), QString());
    }

    /// Of the moments that were searched, and only when all of them were.
    void saysWhetherItListened()
    {
        SearchDesk desk;
        QSignalSpy wanted(desk.form, &frmEventi::journalWanted);
        auto *line = control<QPushButton>(desk.form, u"cmdCoverage"_s);
        const auto pass = [&desk](int minutes) {
            desk.clock.milliseconds += minutes * 60'000;
            desk.clock.moment = desk.clock.moment.addSecs(minutes * 60);
        };
        const auto note = [&desk](JournalKind kind) {
            desk.journal.note(kind, u"7"_s);
            desk.journal.wake();
        };
        const auto said = [&] {
            desk.search();
            desk.messages.take();
            return line->isVisible() ? line->text() : QString();
        };
        const auto lastExported = [&desk] {
            desk.press("cmdToExcel");
            auto *name = control<QLineEdit>(control<QFileDialog>(desk.form, u"ComDial"_s), u"fileNameEdit"_s);
            name->setText(desk.test.directory.filePath(u"out.xls"_s));
            desk.messages.answers = {Messages::Answer::Yes};
            QTest::keyClick(name, Qt::Key_Return);
            [&desk] { QTRY_VERIFY(desk.canSearch()); }();
            desk.messages.take();
            QDir(desk.test.directory.path()).mkdir(u"books"_s);
            QFile::remove(desk.test.directory.filePath(u"books/out.xls"_s));
            QFile::copy(desk.test.directory.filePath(u"out.xls"_s), desk.test.directory.filePath(u"books/out.xls"_s));
            const QJsonArray sheet = readWorkbooks(desk.test.directory.filePath(u"books"_s))[0][0].toArray();
            return u"%1 %2"_s.arg(sheet[3].toInt()).arg(sheet[6][0].toString());
        };
        desk.test.addEvents(u"05-03-2004"_s, {{u"1"_s, u"TX"_s, u"A"_s, {}, {}, u"07:00:00"_s}});
        QVERIFY(!line->isVisible());
        QCOMPARE(said(), u"Not known whether listening: once, 7 h 45 min in all"_s);
        QCOMPARE(lastExported(), u"3 "_s + line->text());

        pass(-24 * 60);
        desk.journal.begin(u"1.03"_s);
        note(JournalKind::PortOpened);
        pass(24 * 60 - 30);
        QCOMPARE(said(), u"The program listened throughout."_s);
        QCOMPARE(lastExported(), u"2 Rossi"_s);
        note(JournalKind::PortLost);
        pass(10);
        note(JournalKind::PortBack);
        pass(20);
        const QString gap = u"Not listening: once, 10 min in all"_s;
        QCOMPARE(said(), gap);
        QCOMPARE(lastExported(), u"3 "_s + gap);
        // The hours that are searched, whatever their events.
        desk.edit("txtOraFine")->setText(u"07:14:59"_s);
        desk.edit("txtCodice")->setText(u"9"_s);
        QCOMPARE(said(), u"The program listened throughout."_s);
        desk.edit("txtOraIn")->setText(u"07:20:00"_s);
        desk.edit("txtOraFine")->setText(u"23:59:59"_s);
        desk.edit("txtDataFine")->setText(u"31/12/2099"_s);
        QCOMPARE(said(), u"Not listening: once, 5 min in all"_s);
        // What waits in memory may be that the port is lost.
        desk.journal.spaceLeft = [] { return 0; };
        desk.journal.note(JournalKind::InterfaceAnswers);
        QVERIFY(said().contains(u"Not known"_s));

        line->setFocus();
        QTest::keyClick(line, Qt::Key_Return);
        QTest::mouseClick(line, Qt::LeftButton);
        QCOMPARE(wanted.size(), 2);
        QCOMPARE(wanted[1], (QVariantList{QDate(2004, 3, 5), QDate(2099, 12, 31)}));

        QList<QStringList> events(3000, {u"1"_s, u"TX"_s, u"A"_s, {}, {}, u"10:00:00"_s});
        desk.test.addEvents(u"05-03-2004"_s, events);
        desk.edit("txtCodice")->clear();
        desk.press("cmdRicerca");
        QTest::keyClick(control<frmRicercapr>(desk.form, u"frmRicercapr"_s), Qt::Key_Escape);
        QTRY_VERIFY(desk.canSearch());
        QVERIFY(!line->isVisible());
        desk.journal.end();
    }

    void exportAsksOnce()
    {
        SearchDesk desk;
        desk.press("cmdToExcel");
        QCOMPARE(desk.messages.take(), QStringList(u"Information: No events available!"_s));
        desk.test.addEvents(u"05-03-2004"_s, {{u"1"_s, u"TX"_s, u"A"_s, {}, {}, u"10:00:00"_s}});
        desk.search();
        const auto choose = [&desk](const QString &file) {
            desk.press("cmdToExcel");
            auto *name = control<QLineEdit>(control<QFileDialog>(desk.form, u"ComDial"_s), u"fileNameEdit"_s);
            QVERIFY(name->text().isEmpty());
            name->setText(file);
            QTest::keyClick(name, Qt::Key_Return);
            QTRY_VERIFY(!desk.form->findChild<QFileDialog *>());
            QTRY_VERIFY(!desk.form->findChild<frmRicercapr *>());
        };
        const QString file = desk.test.directory.filePath(u"out"_s);
        choose(file);
        QVERIFY(desk.test.read(u"out.xls"_s).startsWith("\xD0\xCF\x11\xE0"));
        desk.test.write(u"out.xls"_s, "old");
        choose(file + u" 31.12"_s);
        QVERIFY(desk.test.files().contains(u"out 31.12.xls"_s));
        choose(file + u".xls"_s);
        const QStringList question = {u"Question: The file '"_s + file + u".xls' already exists!\r\nOverwrite ?"_s};
        QCOMPARE(desk.messages.take(), question);
        QCOMPARE(desk.test.read(u"out.xls"_s), "old");
        desk.messages.answers = {Messages::Answer::Yes};
        choose(file + u".xls"_s);
        QTRY_VERIFY(desk.test.read(u"out.xls"_s) != "old");
        QCOMPARE(desk.messages.take(), question);
        desk.test.disk.stopAt = int(desk.test.disk.steps.size());
        choose(file + u"2.xls"_s);
        QTRY_COMPARE(desk.messages.shown.size(), 1);
        QVERIFY(desk.messages.take().first().startsWith(u"Exclamation: Cannot create the 'Excel' file"_s));
    }

    void doesNotOpenHalfFilled()
    {
        Office base; // without a register
        frmEventi search(base.texts, base.messages, base.test.archives, base.clock, base.printer, base.journal);
        QVERIFY(!search.open());
        frmEventiOdierni view(base.texts, base.messages, base.test.archives, base.clock, base.printer);
        QVERIFY(!view.open());
        QCOMPARE(base.messages.take().size(), 2);
    }
};

QTEST_MAIN(TestEvents)
#include "tst_gui_events.moc"
