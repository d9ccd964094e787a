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
    ~Computer() { Q_ASSERT(!rtsAsserted); }

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
        QCOMPARE(com(window, port)->toolTip(), com(window, port)->isEnabled() ? computer.ports.device(port) : QString());
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
    QTest::newRow("another device") << QList{answer, answer, answer, answer}.mid(4) + QList(4, QByteArrayList{"&IC\r\nERROR"}) << false << 4;
    QTest::newRow("an event comes in between") << QList{event + answer, answer} << true << 2;
    QTest::newRow("name is not at the front") << QList(4, QByteArrayList{" TOLMAR"}) << false << 4;
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
    line.write("TOLM"); // of an old answer
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
    QTRY_COMPARE(computer.messages.take(), QStringList(told));
    QVERIFY(computer.isFree(7));
    QVERIFY(control<QPushButton>(window, "cmdOk")->isEnabled());
    QVERIFY(control<QLabel>(window, "lblProva")->text().isEmpty());
    QVERIFY(com(window, 7)->isChecked());
    window->unload();
}
