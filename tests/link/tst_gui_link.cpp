#include "link/ConfigFields.h"
#include "link/frmConfInt.h"
#include "link/frmImpCom.h"
#include "link/frmUtility.h"
#include "platform/PseudoTerminal.h"
#include "support/FakeMessages.h"
#include "support/Fixtures.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

#include <map>

namespace {

/// The window's own control; it notes whether it ever asserted the line that disables the interface.
class NotedControl : public SerialControl
{
public:
    NotedControl(const SerialPorts &ports, bool &asserted) : SerialControl(ports), m_asserted(asserted) {}

protected:
    void tellRts(bool asserted) override { m_asserted = m_asserted || asserted; }

private:
    bool &m_asserted;
};

/// Lets something happen while a question stands.
struct SlowMessages : FakeMessages {
    std::function<void()> meanwhile;

    void ask(QWidget *over, const QString &text, Buttons buttons, std::function<void(Answer)> then) override
    {
        if (meanwhile)
            meanwhile();
        FakeMessages::ask(over, text, buttons, std::move(then));
    }
};

/// A computer with some of the eight ports.
struct Computer {
    explicit Computer(const QList<int> &present)
    {
        texts.fill(2);
        QDir(test.directory.path()).mkpath(u"Porte"_s);
        for (int port = 1; port <= PortTest::Ports; ++port)
            QFile::link(u"nowhere"_s, link(port));
        for (int port : present)
            plug(port);
    }
    ~Computer()
    {
        if (rtsAsserted)
            qFatal("a port that is only looked at was told to assert RTS");
    }

    QString link(int port) const { return test.directory.filePath(u"Porte/COM%1"_s.arg(port)); }
    void plug(int port)
    {
        lines[port] = std::make_unique<PseudoTerminal>(link(port));
        QVERIFY(lines[port]->open().ok());
    }
    bool isFree(int port) const { return checkDeviceIsFree(ports.device(port)).ok(); }
    frmImpCom *open(bool first = false, int configured = 0)
    {
        auto *window = new frmImpCom(texts, messages, portTest);
        window->setPrima(first);
        window->setConfiguredPort(configured);
        window->show();
        return window;
    }

    TestFolder test;
    SerialPorts ports{test.folder};
    FakeClock clock;
    Texts texts;
    SlowMessages messages;
    bool rtsAsserted = false;
    PortTest portTest{std::make_unique<NotedControl>(ports, rtsAsserted), ports, clock};
    std::map<int, std::unique_ptr<PseudoTerminal>> lines;
};

template<class Widget>
Widget *control(QWidget *window, const char *name)
{
    auto *widget = window->findChild<Widget *>(QLatin1String(name));
    if (!widget)
        qFatal("no control %s", name);
    return widget;
}

void press(QWidget *window, const char *name)
{
    control<QPushButton>(window, name)->click();
}

QRadioButton *com(QWidget *window, int port)
{
    return control<QRadioButton>(window, qPrintable(u"Com(%1)"_s.arg(port - 1)));
}

} // namespace

class TestGuiLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scan();
    void preselection_data();
    void preselection();
    void arrowKeysSkipWhatIsNotAvailable();
    void connection_data();
    void connection();
    void portGoesDuringTheTest();
    void leaving_data();
    void leaving();
    void noPortAtAll();
    void fields_data();
    void fields();
    void reading();
    void notOnLine();
    void diagnostics_data();
    void diagnostics();
};

void TestGuiLink::scan()
{
    Computer computer({5, 6, 8});
    SerialControl holder(computer.ports);
    holder.setCommPort(6);
    QVERIFY(holder.setPortOpen(true).ok());

    QPointer<frmImpCom> window = computer.open();
    QVERIFY(!window->isEnabled());
    QTRY_VERIFY(window->isEnabled());
    for (int port = 1; port <= PortTest::Ports; ++port) {
        QCOMPARE(com(window, port)->isEnabled(), port == 5 || port == 8);
        QCOMPARE(com(window, port)->toolTip(),
                 com(window, port)->isEnabled() ? computer.ports.device(port) : QString());
        QCOMPARE(computer.isFree(port), com(window, port)->isEnabled());
    }
    QVERIFY(holder.portOpen());
    computer.lines[6]->write("R/A");
    QTRY_COMPARE(holder.input().toByteArray(), QByteArray("R/A"));
    window->unload();
}

void TestGuiLink::preselection_data()
{
    QTest::addColumn<bool>("first");
    QTest::addColumn<int>("configured");
    QTest::addColumn<int>("chosen"); // 0 = none
    QTest::newRow("configured") << false << 7 << 7;
    QTest::newRow("vanished") << false << 5 << 0;
    QTest::newRow("never chosen") << false << 0 << 0;
    QTest::newRow("above the ports") << false << 9 << 0;
    QTest::newRow("negative") << false << -6 << 0;
    QTest::newRow("first start takes the first") << true << 0 << 6;
    QTest::newRow("first start knows no other") << true << 7 << 6;
}

void TestGuiLink::preselection()
{
    QFETCH(bool, first);
    QFETCH(int, configured);
    QFETCH(int, chosen);
    Computer computer({6, 7});
    QPointer<frmImpCom> window = computer.open(first, configured);
    QSignalSpy closing(window, &frmImpCom::Chiudi);
    QTRY_VERIFY(window->isEnabled());
    for (int port = 1; port <= PortTest::Ports; ++port)
        QCOMPARE(com(window, port)->isChecked(), port == chosen);
    if (chosen == 0) {
        press(window, "cmdProva");
        press(window, "cmdOk");
        const QString refused = u"Exclamation: "_s + computer.texts[Text::SelezionareUnaPortaCom];
        QCOMPARE(computer.messages.take(), QStringList({refused, refused}));
        QVERIFY(closing.isEmpty());
        window->unload();
    } else {
        press(window, "cmdOk");
        QCOMPARE(closing, QList<QVariantList>({{chosen, 1}}));
    }
    QTRY_VERIFY(!window);
}

void TestGuiLink::arrowKeysSkipWhatIsNotAvailable()
{
    Computer computer({5, 7, 8});
    QPointer<frmImpCom> window = computer.open(false, 5);
    QTRY_VERIFY(window->isEnabled());
    QVERIFY(QTest::qWaitForWindowActive(window));
    QTRY_VERIFY(com(window, 5)->hasFocus());
    QTest::keyClick(com(window, 5), Qt::Key_Down);
    QVERIFY(com(window, 7)->isChecked() && com(window, 7)->hasFocus());
    QTest::keyClick(com(window, 7), Qt::Key_Down);
    QVERIFY(com(window, 8)->isChecked());
    window->unload();
}

void TestGuiLink::connection_data()
{
    // What the interface says to each question, in pieces that arrive one by one.
    QTest::addColumn<QList<QByteArrayList>>("replies");
    QTest::addColumn<bool>("found");
    QTest::addColumn<int>("asked");
    const QByteArrayList silence;
    const QByteArrayList answer = {interfaceBanner()};
    const QByteArrayList event = {"R/A-00", "0012345X", "..\r\n"};
    QTest::newRow("at once") << QList{answer} << true << 1;
    QTest::newRow("in pieces") << QList{QByteArrayList{"T", "OLM", "AR"}} << true << 1;
    QTest::newRow("at the last attempt") << QList{silence, silence, silence, answer} << true << 4;
    QTest::newRow("silent") << QList<QByteArrayList>{} << false << 4;
    QTest::newRow("too short") << QList{QByteArrayList{"TOLMA"}, QByteArrayList{"R"}} << false << 4;
    QTest::newRow("another device") << QList<QByteArrayList>(4, QByteArrayList{"&IC\r\nERROR"}) << false << 4;
    QTest::newRow("an event comes in between") << QList{event + answer, answer} << true << 2;
    QTest::newRow("name is not at the front") << QList<QByteArrayList>(4, QByteArrayList{" TOLMAR"}) << false << 4;
}

void TestGuiLink::connection()
{
    QFETCH(QList<QByteArrayList>, replies);
    QFETCH(bool, found);
    QFETCH(int, asked);
    Computer computer({5, 7});
    PseudoTerminal &line = *computer.lines[7];
    QByteArray received;
    connect(&line, &PseudoTerminal::readyRead, &computer.portTest, [&] { received += line.read(); });
    QPointer<frmImpCom> window = computer.open(false, 7);
    QTRY_VERIFY(window->isEnabled());
    press(window, "cmdProva");
    for (int question = 1; question <= asked; ++question) {
        QTRY_COMPARE(received, QByteArray("&IC").repeated(question));
        QVERIFY(!control<QPushButton>(window, "cmdOk")->isEnabled());
        QVERIFY(!control<QPushButton>(window, "cmdProva")->isEnabled());
        QVERIFY(control<QLabel>(window, "lblProva")->text().contains(u"COM7"_s));
        for (const QByteArray &piece : replies.value(question - 1)) {
            line.write(piece);
            QTRY_COMPARE(line.unread(), 0);
        }
        if (found && question == asked)
            break;
        computer.clock.milliseconds += 999;
        computer.portTest.wake();
        QTest::qWait(0);
        QCOMPARE(received.size(), 3 * question);
        QVERIFY(computer.messages.shown.isEmpty());
        computer.clock.milliseconds += 1;
        computer.portTest.wake();
    }
    const Text result = found ? Text::ConnessioneEffettuata : Text::ImpossibileStabilireCollegamento;
    const QString told = (found ? u"Information: "_s : u"Exclamation: "_s) + computer.texts[result];
    QTRY_VERIFY(!computer.messages.shown.isEmpty());
    QCOMPARE(computer.messages.take(), QStringList(told));
    QVERIFY(computer.isFree(7));
    QVERIFY(control<QPushButton>(window, "cmdOk")->isEnabled());
    QVERIFY(control<QLabel>(window, "lblProva")->text().isEmpty());
    QVERIFY(com(window, 7)->isChecked());
    window->unload();
}

void TestGuiLink::portGoesDuringTheTest()
{
    Computer computer({7});
    QPointer<frmImpCom> window = computer.open(false, 7);
    QTRY_VERIFY(window->isEnabled());
    const QStringList told(u"Exclamation: "_s + computer.texts[Text::ImpossibileStabilireCollegamento]);
    for (bool before : {false, true}) {
        if (before)
            computer.lines[7]->close();
        press(window, "cmdProva");
        computer.lines[7]->close();
        QTRY_VERIFY(!computer.messages.shown.isEmpty());
        QCOMPARE(computer.messages.take(), told);
        QVERIFY(control<QPushButton>(window, "cmdProva")->isEnabled());
    }
    window->unload();
}

void TestGuiLink::leaving_data()
{
    QTest::addColumn<bool>("first");
    QTest::addColumn<QByteArray>("how");
    QTest::addColumn<QList<QVariantList>>("told");
    QTest::addColumn<bool>("closes");
    const QList<QVariantList> nothing;
    const QList<QVariantList> cancelled = {{0, 2}};
    QTest::newRow("cancel") << false << QByteArray("cmdAnnulla") << cancelled << true;
    QTest::newRow("escape") << false << QByteArray("Esc") << cancelled << true;
    QTest::newRow("close box") << false << QByteArray("close") << cancelled << true;
    QTest::newRow("with the program") << false << QByteArray("unload") << nothing << true;
    QTest::newRow("first start: cancel") << true << QByteArray("cmdAnnulla") << nothing << false;
    QTest::newRow("first start: escape") << true << QByteArray("Esc") << nothing << false;
    QTest::newRow("first start: close box") << true << QByteArray("close") << nothing << false;
    QTest::newRow("first start: with the program") << true << QByteArray("unload") << nothing << true;
}

void TestGuiLink::leaving()
{
    QFETCH(bool, first);
    QFETCH(QByteArray, how);
    QFETCH(QList<QVariantList>, told);
    QFETCH(bool, closes);
    for (bool testing : {false, true}) {
        Computer computer({8});
        QPointer<frmImpCom> window = computer.open(first, 8);
        QSignalSpy closing(window, &frmImpCom::Chiudi);
        QSignalSpy refused(window, &ChildWindow::closeRefused);
        bool wasFree = true;
        connect(window, &frmImpCom::Chiudi, &computer.portTest, [&] { wasFree = computer.isFree(8); });
        QTRY_VERIFY(window->isEnabled());
        if (testing) {
            press(window, "cmdProva");
            QVERIFY(!computer.isFree(8));
        }
        if (how == "unload")
            window->unload();
        else if (how == "close")
            window->close();
        else if (how == "Esc")
            QTest::keyClick(window, Qt::Key_Escape);
        else
            press(window, how.constData());
        if (closes)
            QTRY_VERIFY(!window);
        else
            QTest::qWait(150); // longer than a button stays down
        QCOMPARE(closing, told);
        QCOMPARE(refused.size(), how == "close" && !closes ? 1 : 0);
        // Who opens the port again when it hears of the end finds it free.
        QVERIFY(wasFree);
        QCOMPARE(computer.isFree(8), closes || !testing);
        if (window)
            window->unload();
    }
}

void TestGuiLink::noPortAtAll()
{
    using Answer = Messages::Answer;
    Computer computer({});
    const QString question = u"Question: "_s + computer.texts[OwnText::NoPortAvailable];
    computer.messages.answers = {Answer::No, Answer::Yes};
    QPointer<frmImpCom> window = computer.open(true);
    QSignalSpy ending(window, &frmImpCom::FineProgramma);
    QTRY_COMPARE(ending.size(), 1);
    QCOMPARE(computer.messages.take(), QStringList({question, question}));
    window->unload();

    computer.messages.answers = {Answer::No};
    computer.messages.meanwhile = [&computer] { computer.plug(6); };
    window = computer.open(true);
    QTRY_VERIFY(com(window, 6)->isChecked());
    QCOMPARE(computer.messages.take(), QStringList(question));
    window->unload();

    // Who can cancel is not asked.
    computer.lines.clear();
    window = computer.open();
    QTRY_VERIFY(window->isEnabled());
    QVERIFY(computer.messages.shown.isEmpty());
    window->unload();
}

void TestGuiLink::fields_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QByteArray>("line2");
    QTest::addColumn<QString>("shown"); // in the order of the window
    const auto row = [](const char *name, int language, const char *line2, const QString &shown) {
        QTest::newRow(name) << language << QByteArray(line2) << shown;
    };
    row("all off", 2, "WIEGAND 26 BIT CH:12 DISABLE PC BRIDGE", u"WIEGAND 26 BIT|DISABLED|12|NO|OFF|OFF|OFF|NO|1.4"_s);
    row("all on", 1, "WIEGAND 26 BIT SITO +CH CH:1234 ENABLE J1",
        u"WIEGAND 26 BIT|ABILITATA|1234|SI|ON|ON|ON|SI|1.4"_s);
    row("German", 4, "WIEGAND 50 BIT +CH CH: DISABLE", u"WIEGAND 50 BIT|GESPERRT||JA|ON|ON|OFF|NEIN|1.4"_s);
    row("BCD", 3, "WIEGAND 37 BIT HID D10302 +CH CH:1 ENABLE",
        u"WIEGAND 37 BIT HID D10302 BCD|VALIDÉE|1|NON|ON|ON|OFF|NON|1.4"_s);
    row("the same, not BCD", 2, "WIEGAND 37 BIT HID D10302 CH:1 ENABLE",
        u"WIEGAND 37 BIT HID D10302|ENABLED|1|NO|ON|ON|OFF|NO|1.4"_s);
    row("RS_C has channels unsaid", 2, "RS_C CH:1 ENABLE", u"RS_C|ENABLED|1|YES|ON|ON|OFF|NO|1.4"_s);
    row("ISO2 has channels unsaid", 2, "ISO2 CH:1 ENABLE", u"ISO2|ENABLED|1|YES|ON|ON|OFF|NO|1.4"_s);
    row("no usable line", 1, "", u"-1||||||||VERSIONE 1.4"_s);
}

namespace {

QString asShown(QWidget *window)
{
    QStringList shown;
    for (const char *name :
         {"txtProtCom", "txtEnable", "txtCanaliAb", "txtInfCan", "txtPonte", "txtPc", "txtJ1", "txtCodSito", "txtVer"})
        shown.append(control<QLineEdit>(window, name)->text());
    return shown.join(u'|');
}

} // namespace

void TestGuiLink::fields()
{
    QFETCH(int, language);
    QFETCH(QByteArray, line2);
    Texts texts;
    texts.fill(language);
    FakeMessages messages;
    frmConfInt window(texts, messages);
    window.configurationRead(parseReply("RS_C SITO CH:1 ENABLE ", "")); // nothing of it may stay
    window.configurationRead(parseReply(line2, "VERSIONE 1.4"));
    QTEST(asShown(&window), "shown");
}

void TestGuiLink::reading()
{
    Texts texts;
    FakeMessages messages;
    frmConfInt window(texts, messages);
    auto *cmdLeggi = control<QPushButton>(&window, "cmdLeggi");
    QSignalSpy wanted(&window, &frmConfInt::Leggi);
    window.show();
    QTRY_COMPARE(wanted.size(), 1);
    QVERIFY(!cmdLeggi->isEnabled());
    window.configurationRead(parseReply("RS_C CH:1 ENABLE", ""));
    const QString before = asShown(&window);
    cmdLeggi->click();
    QCOMPARE(wanted.size(), 2);
    QVERIFY(!cmdLeggi->isEnabled());
    window.configurationRead({});
    QCOMPARE(messages.take(), QStringList(u"Critical: CONNESSIONE IMPOSSIBILE!"_s));
    QCOMPARE(asShown(&window), before);
    QVERIFY(cmdLeggi->isEnabled() && window.isVisible());
}

void TestGuiLink::notOnLine()
{
    Texts texts;
    FakeMessages messages;
    QPointer<frmConfInt> window = new frmConfInt(texts, messages);
    window->show();
    window->notOnLine();
    QCOMPARE(messages.take(),
             QStringList(u"Critical: Interfaccia multiprotocollo non in linea\r\nCONNESSIONE IMPOSSIBILE!"_s));
    QVERIFY(window && window->isVisible()); // until the operator has read it
    QTRY_VERIFY(!window);
}

void TestGuiLink::diagnostics_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<QString>("shown");
    QTest::newRow("enabled") << 1 << record("R/A-000012345X..") << u"12345|A - ABILITATO|TX"_s;
    QTest::newRow("disabled") << 2 << record("K/B-000000777.D.") << u"777|B - DISABLED|DKS"_s;
    QTest::newRow("no code") << 4 << record("R/D-000000000.D.") << u"|D - GESPERRT|TX"_s;
    QTest::newRow("accent") << 3 << record("K/C-000000777X..") << u"777|C - VALIDÉ|DKS"_s;
}

void TestGuiLink::diagnostics()
{
    QFETCH(int, language);
    QFETCH(QByteArray, record);
    Texts texts;
    texts.fill(language);
    frmUtility window(texts);
    record.chop(1); // the LF
    window.showRecord(*decodeRecord(record));
    QStringList shown;
    for (const char *name : {"txtCodice", "txtCanale", "txtTipo"})
        shown.append(control<QLineEdit>(&window, name)->text());
    QTEST(shown.join(u'|'), "shown");
}

QTEST_MAIN(TestGuiLink)
#include "tst_gui_link.moc"
