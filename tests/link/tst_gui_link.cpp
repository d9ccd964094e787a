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

using Replies = QList<QByteArrayList>;
using Told = QList<QVariantList>;

/// A control that may not assert the line that disables the interface.
class ProbingControl : public SerialControl
{
public:
    using SerialControl::SerialControl;

protected:
    void tellRts(bool asserted) override
    {
        if (asserted)
            qFatal("RTS is asserted on a port that is only looked at");
    }
};

/// Lets something happen while a question stands.
struct SlowMessages : FakeMessages {
    std::function<void()> meanwhile = [] {};

    void ask(QWidget *over, const QString &text, Buttons buttons, std::function<void(Answer)> then) override
    {
        meanwhile();
        FakeMessages::ask(over, text, buttons, std::move(then));
    }
};

/// A computer with some of the eight ports, and the port window.
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
        if (window)
            window->unload();
    }

    QString link(int port) const { return test.directory.filePath(u"Porte/COM%1"_s.arg(port)); }
    void plug(int port)
    {
        lines[port] = std::make_unique<PseudoTerminal>(link(port));
        QVERIFY(lines[port]->open().ok());
    }
    bool isFree(int port) const { return checkDeviceIsFree(ports.device(port)).ok(); }
    void open(bool first, int configured)
    {
        window = new frmImpCom(texts, messages, portTest);
        window->setPrima(first);
        window->setConfiguredPort(configured);
        QObject::connect(window, &frmImpCom::FineProgramma, [this] { ++ended; });
        window->show();
        QVERIFY(!window->isEnabled());
        QTRY_VERIFY(window->isEnabled());
    }
    QString message(const char *icon, Text text) const { return QLatin1String(icon) + u": "_s + texts[text]; }

    TestFolder test;
    SerialPorts ports{test.folder};
    FakeClock clock;
    Texts texts;
    SlowMessages messages;
    ProbingControl *prova = new ProbingControl(ports);
    PortTest portTest{std::unique_ptr<SerialControl>(prova), ports, clock};
    std::map<int, std::unique_ptr<PseudoTerminal>> lines;
    QPointer<frmImpCom> window;
    int ended = 0; ///< times that the operator wanted to end the program
};

template<class Widget = QPushButton>
Widget *control(QWidget *window, const QString &name)
{
    auto *widget = window->findChild<Widget *>(name);
    if (!widget)
        qFatal("no control %s", qPrintable(name));
    return widget;
}

QRadioButton *com(QWidget *window, int port)
{
    return control<QRadioButton>(window, u"Com(%1)"_s.arg(port - 1));
}

/// Contents of text boxes, joined by "|".
QString shown(QWidget *window, const char *boxes)
{
    QStringList texts;
    for (const QString &name : QString::fromLatin1(boxes).split(u' '))
        texts.append(control<QLineEdit>(window, u"txt"_s + name)->text());
    return texts.join(u'|');
}

constexpr const char *configuration = "ProtCom Enable CanaliAb InfCan Ponte Pc J1 CodSito Ver";

} // namespace

class TestGuiLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scan();
    void preselection_data();
    void preselection();
    void connection_data();
    void connection();
    void portGoes();
    void leaving_data();
    void leaving();
    void noPortAtAll();
    void fields_data();
    void fields();
    void reading();
    void diagnostics_data();
    void diagnostics();
};

void TestGuiLink::scan()
{
    Computer computer({5, 6, 8});
    SerialControl holder(computer.ports);
    holder.setCommPort(6);
    holder.setRThreshold(1);
    QVERIFY(holder.setPortOpen(true).ok());
    computer.open(false, 0);
    for (int port = 1; port <= PortTest::Ports; ++port) {
        const bool available = port == 5 || port == 8;
        QCOMPARE(com(computer.window, port)->isEnabled(), available);
        QCOMPARE(com(computer.window, port)->toolTip(), available ? computer.ports.device(port) : QString());
        QCOMPARE(computer.isFree(port), available);
    }
    QSignalSpy taken(&holder, &SerialControl::OnComm);
    computer.lines[6]->write("R/A");
    QTRY_VERIFY(!taken.isEmpty());
    QCOMPARE(holder.input().toByteArray(), QByteArray("R/A"));
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
    QTest::newRow("first start") << true << 7 << 6;
}

void TestGuiLink::preselection()
{
    QFETCH(bool, first);
    QFETCH(int, configured);
    QFETCH(int, chosen);
    Computer computer({6, 7});
    computer.open(first, configured);
    QSignalSpy closing(computer.window, &frmImpCom::Chiudi);
    for (int port = 1; port <= PortTest::Ports; ++port)
        QCOMPARE(com(computer.window, port)->isChecked(), port == chosen);
    control(computer.window, u"cmdOk"_s)->click();
    QCOMPARE(closing, chosen == 0 ? Told() : Told({{chosen, 1}}));
    if (chosen != 0) {
        QTRY_VERIFY(!computer.window);
        return;
    }
    control(computer.window, u"cmdProva"_s)->click();
    QCOMPARE(computer.messages.take(), QStringList(2, computer.message("Exclamation", Text::SelezionareUnaPortaCom)));
}

void TestGuiLink::connection_data()
{
    // What the interface says to each question, in pieces that arrive one by one.
    QTest::addColumn<Replies>("replies");
    QTest::addColumn<bool>("found");
    QTest::addColumn<int>("asked");
    const QByteArrayList answer = {interfaceBanner()};
    const QByteArrayList event = {"R/A-00", "0012345X", "..\r\n"};
    QTest::newRow("at once") << Replies({answer}) << true << 1;
    QTest::newRow("in pieces") << Replies({{"T", "OLM", "AR"}}) << true << 1;
    QTest::newRow("at the last attempt") << Replies({{}, {}, {}, answer}) << true << 4;
    QTest::newRow("silent") << Replies() << false << 4;
    QTest::newRow("pieces of two attempts") << Replies({{"TOLMA"}, {"R"}}) << false << 4;
    QTest::newRow("another device") << Replies(4, {"&IC\r\nTOLMAR"}) << false << 4;
    QTest::newRow("an event comes in between") << Replies({event + answer, answer}) << true << 2;
}

void TestGuiLink::connection()
{
    QFETCH(Replies, replies);
    QFETCH(bool, found);
    QFETCH(int, asked);
    Computer computer({5, 7});
    PseudoTerminal &line = *computer.lines[7];
    QByteArray received;
    connect(&line, &PseudoTerminal::readyRead, [&] { received += line.read(); });
    computer.open(false, 7);
    auto *lblProva = control<QLabel>(computer.window, u"lblProva"_s);
    auto *cmdOk = control(computer.window, u"cmdOk"_s);
    control(computer.window, u"cmdProva"_s)->click();
    for (int question = 1; question <= asked; ++question) {
        QTRY_COMPARE(received, QByteArray("&IC").repeated(question));
        QVERIFY(!cmdOk->isEnabled() && lblProva->text().contains(u"COM7"_s));
        for (const QByteArray &piece : replies.value(question - 1)) {
            QSignalSpy taken(computer.prova, &SerialControl::OnComm);
            line.write(piece);
            QTRY_VERIFY(!taken.isEmpty());
        }
        if (found && question == asked)
            break;
        computer.clock.milliseconds += 999;
        computer.portTest.wake();
        QVERIFY(!computer.isFree(7) && computer.messages.shown.isEmpty());
        computer.clock.milliseconds += 1;
        computer.portTest.wake();
    }
    QTRY_VERIFY(!computer.messages.shown.isEmpty());
    QCOMPARE(computer.messages.take(),
             QStringList(found ? computer.message("Information", Text::ConnessioneEffettuata)
                               : computer.message("Exclamation", Text::ImpossibileStabilireCollegamento)));
    QVERIFY(computer.isFree(7) && cmdOk->isEnabled() && lblProva->text().isEmpty());
    QCOMPARE(received.size(), 3 * asked);
}

void TestGuiLink::portGoes()
{
    Computer computer({7});
    computer.open(false, 7);
    // The first time while the test runs, the second time before it.
    for (int time = 0; time < 2; ++time) {
        control(computer.window, u"cmdProva"_s)->click();
        computer.lines[7]->close();
        QTRY_VERIFY(!computer.messages.shown.isEmpty());
        QCOMPARE(computer.messages.take(),
                 QStringList(computer.message("Exclamation", Text::ImpossibileStabilireCollegamento)));
        QVERIFY(control(computer.window, u"cmdProva"_s)->isEnabled());
    }
}

void TestGuiLink::leaving_data()
{
    QTest::addColumn<bool>("first");
    QTest::addColumn<QString>("how");
    QTest::addColumn<Told>("told");
    QTest::addColumn<bool>("closes");
    QTest::newRow("cancel") << false << u"cmdAnnulla"_s << Told({{0, 2}}) << true;
    QTest::newRow("close box") << false << u"close"_s << Told({{0, 2}}) << true;
    QTest::newRow("with the program") << false << u"unload"_s << Told() << true;
    QTest::newRow("first start: cancel") << true << u"cmdAnnulla"_s << Told() << false;
    QTest::newRow("first start: close box") << true << u"close"_s << Told() << false;
    QTest::newRow("first start: with the program") << true << u"unload"_s << Told() << true;
}

void TestGuiLink::leaving()
{
    QFETCH(bool, first);
    QFETCH(QString, how);
    QFETCH(bool, closes);
    Computer computer({8});
    computer.open(first, 8);
    QSignalSpy closing(computer.window, &frmImpCom::Chiudi);
    QSignalSpy refused(computer.window, &ChildWindow::closeRefused);
    bool wasFree = true; // for its opener, when it hears of the end
    connect(computer.window, &frmImpCom::Chiudi, [&] { wasFree = computer.isFree(8); });
    control(computer.window, u"cmdProva"_s)->click();
    QVERIFY(!computer.isFree(8));
    if (how == u"unload"_s)
        computer.window->unload();
    else if (how == u"close"_s)
        computer.window->close();
    else
        control(computer.window, how)->click();
    QCOMPARE(computer.window->isVisible(), !closes);
    QTEST(Told(closing), "told");
    QCOMPARE(refused.size(), how == u"close"_s && !closes ? 1 : 0);
    QVERIFY(wasFree);
    QCOMPARE(computer.isFree(8), closes);
}

void TestGuiLink::noPortAtAll()
{
    using Answer = Messages::Answer;
    Computer computer({});
    const QString question = u"Question: "_s + computer.texts[OwnText::NoPortAvailable];
    computer.open(false, 0); // who can cancel is not asked
    QVERIFY(computer.messages.shown.isEmpty());
    computer.window->unload();

    computer.messages.answers = {Answer::No, Answer::Yes};
    computer.open(true, 0);
    QTRY_COMPARE(computer.ended, 1);
    QCOMPARE(computer.messages.take(), QStringList(2, question));
    computer.window->unload();

    computer.messages.meanwhile = [&computer] { computer.plug(6); };
    computer.open(true, 0);
    QTRY_VERIFY(com(computer.window, 6)->isChecked());
    QCOMPARE(computer.messages.take(), QStringList(question));
}

void TestGuiLink::fields_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QByteArray>("line2");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, int language, const char *line2, const char *text) {
        QTest::newRow(name) << language << QByteArray(line2) << QString::fromUtf8(text);
    };
    const char *bcd = "WIEGAND 37 BIT HID D10302 +CH CH:1 ENABLE";
    const char *notBcd = "WIEGAND 37 BIT HID D10302 CH:1 ENABLE";
    row("all off", 2, "TOLMAR CH:12 DISABLE PC BRIDGE", "TOLMAR|DISABLED|12|NO|OFF|OFF|OFF|NO|1.4");
    row("all on", 1, "TOLMAR SITO +CH CH:123 ENABLE J1", "TOLMAR|ABILITATA|123|SI|ON|ON|ON|SI|1.4");
    row("German", 4, "WIEGAND 50 BIT +CH CH: PC", "WIEGAND 50 BIT|GESPERRT||JA|ON|OFF|OFF|NEIN|1.4");
    row("BCD", 3, bcd, "WIEGAND 37 BIT HID D10302 BCD|VALIDÉE|1|NON|ON|ON|OFF|NON|1.4");
    row("no BCD", 2, notBcd, "WIEGAND 37 BIT HID D10302|ENABLED|1|NO|ON|ON|OFF|NO|1.4");
    row("RS_C", 2, "RS_C CH:1 BRIDGE", "RS_C|DISABLED|1|YES|OFF|ON|OFF|NO|1.4");
    row("ISO2", 2, "ISO2 CH:1 ENABLE", "ISO2|ENABLED|1|YES|ON|ON|OFF|NO|1.4");
    row("no usable line", 1, "", "-1||||||||VERSIONE 1.4");
}

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
    QTEST(shown(&window, configuration), "text");
}

void TestGuiLink::reading()
{
    Texts texts;
    FakeMessages messages;
    QPointer<frmConfInt> window = new frmConfInt(texts, messages);
    auto *cmdLeggi = control(window, u"cmdLeggi"_s);
    QSignalSpy wanted(window, &frmConfInt::Leggi);
    window->show();
    QTRY_COMPARE(wanted.size(), 1);
    QVERIFY(!cmdLeggi->isEnabled());
    window->configurationRead(parseReply("RS_C CH:1 ENABLE", ""));
    const QString before = shown(window, configuration);

    cmdLeggi->click();
    QCOMPARE(wanted.size(), 2);
    QVERIFY(!cmdLeggi->isEnabled());
    window->configurationRead({});
    QCOMPARE(messages.take(), QStringList(u"Critical: CONNESSIONE IMPOSSIBILE!"_s));
    QCOMPARE(shown(window, configuration), before);
    QVERIFY(cmdLeggi->isEnabled());

    window->notOnLine();
    QCOMPARE(messages.take(),
             QStringList(u"Critical: Interfaccia multiprotocollo non in linea\r\nCONNESSIONE IMPOSSIBILE!"_s));
    QVERIFY(window->isVisible()); // until the operator has read it
    QTRY_VERIFY(!window);
}

void TestGuiLink::diagnostics_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("text");
    QTest::newRow("enabled") << 1 << QByteArray("R/A-000012345X..\r") << u"12345|A - ABILITATO|TX"_s;
    QTest::newRow("disabled") << 2 << QByteArray("K/B-000000777.D.\r") << u"777|B - DISABLED|DKS"_s;
    QTest::newRow("accent") << 3 << QByteArray("K/C-000000777X..\r") << u"777|C - VALIDÉ|DKS"_s;
    QTest::newRow("small letters") << 4 << QByteArray("R/D-000000000.D.\r") << u"|D - GESPERRT|TX"_s;
}

void TestGuiLink::diagnostics()
{
    QFETCH(int, language);
    QFETCH(QByteArray, line);
    Texts texts;
    texts.fill(language);
    frmUtility window(texts);
    window.showRecord(*decodeRecord(line));
    QTEST(shown(&window, "Codice Canale Tipo"), "text");
}

QTEST_MAIN(TestGuiLink)
#include "tst_gui_link.moc"
