#include "events/frmPrnLastEv.h"
#include "link/EventLog.h"
#include "prefs/frmImpStampa.h"
#include "support/UnixSocket.h"
#include "support/Windows.h"

#include <QBuffer>
#include <QComboBox>
#include <QPdfDocument>
#include <QPdfSelection>

namespace {

/// What was handed over, as "printer title: text", blanks run together.
QStringList read(const FakePrinters &printers)
{
    QStringList read;
    for (const FakePrintSystem::Sent &sent : printers.fake.sent()) {
        QBuffer buffer;
        buffer.setData(sent.document);
        buffer.open(QIODevice::ReadOnly);
        QPdfDocument document;
        document.load(&buffer);
        QString text = sent.printer + u' ' + sent.title + u':';
        for (int page = 0; page < document.pageCount(); ++page)
            text += u' ' + document.getAllText(page).text();
        read.append(text.simplified());
    }
    return read;
}

/// Settings with PRN=1, an open day without events, a register, English texts.
struct Desk : Office {
    explicit Desk(std::chrono::milliseconds patience = std::chrono::hours(1)) : Office(patience)
    {
        printers.installed = listOf("laser,needle");
        if (!settings.CreaImpostazioni(2) || !printer.choose(1))
            qFatal("the settings cannot be made");
        test.addUsers({listOf("7,TX,Rossi,Anna"), listOf("7,DKS,Bianchi,Ugo"), listOf("8,DKS,Verdi,Zoe")});
        log.open();
    }
    /// Stores events, one a minute, the last of them with the code 7 of a keypad and all others with that of nobody.
    void store(int count)
    {
        const QDateTime first(QDate(2004, 3, 5), QTime(7, 0, 0));
        for (int i = 1; i <= count; ++i)
            log.append(makeEvent({i == count ? u"7"_s : u"5"_s, CodeType::Keypad, u"B"_s, true, false},
                                 first.addSecs(60 * i)));
    }

    EventLog log{test.archives, clock, notices};
};

struct LastPrint : Desk {
    std::unique_ptr<frmPrnLastEv> window =
        std::make_unique<frmPrnLastEv>(frmPrnLastEv::Source{log, clock, test.archives}, printer, texts, messages);
    QLineEdit *box = window->findChild<QLineEdit *>(u"txtNumEv"_s);

    explicit LastPrint(std::chrono::milliseconds patience = std::chrono::hours(1)) : Desk(patience)
    {
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        if (!window->open())
            qFatal("the register cannot be copied");
        window->show();
    }
    QWidget *notice() const
    {
        for (QWidget *shown : QApplication::topLevelWidgets()) {
            if (shown->objectName() == u"frmStampaInCorso")
                return shown;
        }
        return nullptr;
    }
    void print(const QString &number)
    {
        box->clear();
        QTest::keyClicks(box, number);
        control(window.get(), u"cmdOk"_s)->click();
    }
};

} // namespace

class TestGuiPrinting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// A print that is made while the print system says nothing holds nothing up. First, as the library of the print
    /// system looks only once where that is.
    void silentPrintSystem()
    {
        LastPrint desk;
        const UnixSocket silent(desk.test.directory.filePath(u"socket"_s), SOCK_STREAM);
        qputenv("CUPS_SERVER", silent.path());
        desk.store(1);
        const Heartbeat heart;
        desk.print(u"1"_s);
        QTRY_COMPARE(desk.printers.fake.sent().size(), 1);
        QVERIFY2(heart.longest < 1000, QByteArray::number(heart.longest).constData());
    }

    void lastEvents_data()
    {
        const Rows<int, int, QString, int, QString> row("PRN", "events", "typed", "first", "left");
        row("five of twelve", 1, 12, u"5"_s, 8, u"5"_s);
        row("more than there are; printer gone", 7, 12, u"9a9999999999"_s, 1, u"99999999999"_s);
        row("two pages", 1, 40, u"0040"_s, 1, u"0040"_s);
        row("zero", 1, 12, u"0"_s, 0, {});
        row("nothing", 1, 12, u"x"_s, 0, {});
    }
    void lastEvents()
    {
        QFETCH(int, events);
        QFETCH(QString, typed);
        QFETCH(int, first);
        LastPrint desk;
        QSignalSpy printed(desk.window.get(), &frmPrnLastEv::printed);
        QFETCH(int, PRN);
        desk.settings.IndStampante = PRN;
        desk.printers.byDefault = u"needle"_s;
        desk.store(events);
        desk.print(typed);
        QTEST(desk.box->text(), "left");
        QCOMPARE(desk.window->findChild<Printing *>()->isRunning(), first > 0);
        if (first == 0)
            return;
        QTRY_VERIFY(desk.notice());
        // What comes while it prints is neither printed nor kept from being stored.
        desk.store(1);
        QTRY_COMPARE(desk.printers.fake.sent().size(), 1);
        QCOMPARE(desk.test.rows(ArchiveName::events(u"05-03-2004"_s), u"SELECT COUNT(*) FROM Eventi"_s),
                 QStringList{QString::number(events + 1)});
        QString expected;
        for (int i = first; i <= events; ++i)
            expected += u" %1 DKS %2B 05-03-2004 %3"_s.arg(i).arg(i == events ? u"Rossi Anna "_s : QString(),
                                                                  QTime(7, i).toString(u"hh:mm:ss"_s));
        QTRY_COMPARE(printed.size(), 1);
        QCOMPARE(printed[0][0].value<DailyHours>().text(), u"05/03/2004 - 05/03/2004, 00:00:00 - 23:59:59"_s);
        QCOMPARE(printed[0][1].toInt(), events - first + 1);
        QString text = read(desk.printers).first();
        const QString heading = u" N\u00B0 Type User User CH CH Date Time KOR Surname First name DIS DIS"_s;
        QCOMPARE(text.count(heading), events == 40 ? 2 : 1);
        text.remove(heading);
        for (const QString &foot : {u" Page 1"_s, u" Page 2"_s})
            text.remove(foot);
        QCOMPARE(text, u"needle Last events: LAST EVENTS"_s + expected);
    }

    void notice()
    {
        LastPrint desk;
        desk.store(1);
        desk.print(u"1"_s);
        control(desk.window.get(), u"cmdOk"_s)->click(); // while the first one runs
        QTRY_VERIFY(desk.notice());
        QPointer notice = desk.notice();
        QVERIFY(!notice->isModal());
        QTRY_COMPARE(desk.printers.fake.sent().size(), 1);
        auto *tmrStampa = desk.window->findChild<QTimer *>(u"tmrStampa"_s);
        QVERIFY(notice && tmrStampa->isActive() && tmrStampa->interval() == 3000);
        tmrStampa->setInterval(1);
        QTRY_VERIFY(!notice && !tmrStampa->isActive());
        tmrStampa->setInterval(3000);
        // A window that closes in the middle takes its document with it.
        for (const bool isUnloaded : {true, false}) {
            desk.store(300);
            desk.print(u"300"_s);
            QVERIFY(desk.window->findChild<Printing *>()->isRunning());
            isUnloaded ? desk.window->unload() : desk.window.reset();
            QCoreApplication::processEvents();
            QVERIFY(!desk.notice());
        }
        QCOMPARE(desk.printers.fake.sent().size(), 1);
        QVERIFY(!desk.test.archives.exists(u"Archivi/AnaPrn.zeb"));
    }

    void refusals_data()
    {
        const Rows<int, QString, int, bool, QString> row("PRN", "installed", "events", "silent", "message");
        const QString two = u"laser,needle"_s;
        row("none installed", 1, {}, 0, false, u"Information: No Printer installed"_s);
        row("silent", 0, two, 1, true, u"Exclamation: Printing is not possible: the print system does not answer."_s);
        row("no events", 1, two, 0, false, u"Information: No events available!"_s);
        row("day not open", 1, two, -1, false,
            u"Critical: The event archive 'Archivi/Eventi_05-03-2004.zeb' cannot be opened: not open"_s);
    }
    void refusals()
    {
        QFETCH(int, PRN);
        QFETCH(QString, installed);
        QFETCH(int, events);
        QFETCH(bool, silent);
        QFETCH(QString, message);
        LastPrint desk(silent ? std::chrono::milliseconds(1) : std::chrono::hours(1));
        if (events < 0)
            desk.log.close();
        desk.store(events);
        desk.printers.installed = installed.split(u',', Qt::SkipEmptyParts);
        desk.settings.IndStampante = PRN;
        if (silent)
            desk.printers.fake.allow(0);
        desk.print(u"3"_s);
        QTRY_COMPARE(desk.messages.shown, QStringList{message});
        desk.messages.take();
        desk.printers.fake.allow(1);
        QVERIFY(desk.printers.fake.sent().isEmpty() && !desk.window->findChild<Printing *>()->isRunning());
    }

    /// The window has gone when the print system answers; or the program ends first.
    void lateAnswer_data()
    {
        const Rows<bool, int, QString> row("ends", "says", "told");
        row("taken", false, int(FaultCode::NotOpen), {});
        row("refused", false, int(FaultCode::AccessDenied), u"Printing on 'needle' is not possible: access denied"_s);
        row("none", true, int(FaultCode::NotOpen),
            u"The print system has not yet confirmed the document for 'needle'."_s);
    }
    void lateAnswer()
    {
        QFETCH(bool, ends);
        QFETCH(int, says);
        LastPrint desk;
        FakePrintSystem &fake = desk.printers.fake;
        fake.says = FaultCode(says);
        fake.allow(1); // the list
        desk.store(1);
        desk.print(u"1"_s);
        QTRY_COMPARE(fake.sent().size(), 1);
        QVERIFY(!desk.window->findChild<Printing *>()->isRunning());
        desk.window.reset();
        QVERIFY(QFile::exists(fake.sent().first().file));
        if (ends)
            desk.printer.end(std::chrono::milliseconds(1));
        else
            fake.allow(1);
        QTRY_VERIFY(!QFile::exists(fake.sent().first().file));
        QTEST(takeNotices(desk.notices).join(u'/'), "told");
        fake.allow(1);
    }

    void choice_data()
    {
        const Rows<int, int, QString, QString, QString> row("PRN", "choose", "shown", "outcome", "message");
        row("another", 0, 1, u"laser"_s, u"1 1"_s, {});
        row("not chosen yet", -1, 1, u"needle"_s, u"1 1"_s, {});
        row("gone, cancelled", 5, -1, u"needle"_s, u"5 1"_s, {});
        row("not saved", 1, 0, u"needle"_s, u"0 1"_s,
            u"Exclamation: The setting 'PRN' cannot be saved: read or write error"_s);
        row("none", 1, -1, {}, u"1 1"_s, u"None: No Printer installed"_s);
    }
    void choice()
    {
        QFETCH(int, PRN);
        QFETCH(int, choose);
        QFETCH(QString, message);
        Desk desk;
        if (message.startsWith(u"None"))
            desk.printers.installed.clear();
        desk.printers.byDefault = u"needle"_s;
        desk.settings.IndStampante = PRN;
        QPointer window = new frmImpStampa(desk.texts, desk.printer, desk.messages);
        window->show();
        auto *box = window->findChild<QComboBox *>(u"cmbStampanti"_s);
        QTRY_VERIFY(box->count() > 0 || !desk.messages.shown.isEmpty());
        QTEST(box->currentText(), "shown");
        QCOMPARE(control(window, u"cmdOk"_s)->isEnabled(), box->count() > 0);
        if (choose >= 0)
            box->setCurrentIndex(choose);
        desk.test.disk.stopAt = message.startsWith(u"Excl") ? 0 : -1;
        QTest::keyClick(window, choose >= 0 ? Qt::Key_Return : Qt::Key_Escape);
        QTRY_VERIFY(!window);
        QCOMPARE(desk.messages.take().join(u'/'), message);
        QTEST(u"%1 %2"_s.arg(desk.settings.IndStampante).arg(desk.settings.LeggiImpostazione(u"PRN"_s)), "outcome");
    }
};

QTEST_MAIN(TestGuiPrinting)
#include "tst_gui_printing.moc"
