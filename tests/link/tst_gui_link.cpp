#include "link/frmConfInt.h"
#include "link/frmImpCom.h"
#include "platform/PseudoTerminal.h"
#include "platform/SerialTransport.h"
#include "support/Windows.h"

#include <QRadioButton>

#include <map>

namespace {

using Replies = QList<QByteArrayList>;

/// May not assert the line that disables the interface.
struct ProbingLine : SerialTransport {
    void setEnableLine(bool asserted) override
    {
        if (asserted)
            qFatal("RTS is asserted on a port that is only looked at");
    }
};

/// A computer with some of the eight ports, and the port window.
struct Computer : TestFolder {
    explicit Computer(const QList<int> &present)
    {
        texts.fill(2);
        QDir(directory.path()).mkpath(u"Porte"_s);
        for (int port = 1; port <= PortTest::Ports; ++port)
            QFile::link(u"nowhere"_s, link(port));
        for (int port : present)
            plug(port);
    }
    ~Computer() { delete window; }

    QString link(int port) const { return directory.filePath(u"Porte/COM%1"_s.arg(port)); }
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
    QRadioButton *com(int port) const { return control<QRadioButton>(window, u"Com(%1)"_s.arg(port - 1)); }
    QAbstractButton *button(const char *name) const { return control(window, QLatin1String(name)); }

    SerialPorts ports{folder, {directory.filePath(u"dev"_s), directory.filePath(u"sys"_s)}};
    FakeClock clock;
    Texts texts;
    FakeMessages messages;
    SerialControl *prova = new SerialControl(ports, std::make_unique<ProbingLine>());
    PortTest portTest{std::unique_ptr<SerialControl>(prova), ports, clock};
    std::map<int, std::unique_ptr<PseudoTerminal>> lines;
    QPointer<frmImpCom> window;
    int ended = 0; ///< times that the operator wanted to end the program
};

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
    void scan()
    {
        Computer computer({5, 6, 8});
        SerialControl holder(computer.ports);
        holder.setCommPort(6);
        holder.setRThreshold(1);
        QVERIFY(holder.setPortOpen(true).ok());
        computer.open(false, 0);
        for (int port = 1; port <= PortTest::Ports; ++port) {
            QCOMPARE(computer.com(port)->isEnabled(), port == 5 || port == 8);
            QCOMPARE(computer.isFree(port), port == 5 || port == 8);
        }
        computer.lines[6]->write("R/A");
        QByteArray received;
        QTRY_COMPARE(received += holder.input().toByteArray(), QByteArray("R/A"));
    }

    /// What a port says it is: to the eye, and to a screen reader.
    void words()
    {
        Computer computer({7});
        const QDir root(computer.directory.path());
        for (const char *folder : {"dev", "sys/ttyUSB0", "bus/1-2/1-2:1.0/ttyUSB0"})
            root.mkpath(QLatin1String(folder));
        for (const char *file : {"dev/ttyS0", "dev/ttyUSB0", "bus/1-2/idVendor"})
            computer.write(QLatin1String(file), {});
        computer.write(u"bus/1-2/manufacturer"_s, "<b>Maker & Sons</b>\n");
        computer.write(u"bus/1-2/serial"_s, "A5\n");
        QFile::link(root.filePath(u"bus/1-2/1-2:1.0/ttyUSB0"_s), root.filePath(u"sys/ttyUSB0/device"_s));
        for (const int port : {1, 5, 6})
            QFile::remove(computer.link(port));
        computer.open(false, 7);
        QStringList words;
        for (const int port : {1, 5, 6, 7}) {
            words.append(computer.com(port)->accessibleDescription().replace(root.path(), u"HERE"_s));
            QCOMPARE(computer.com(port)->text(), u"COM%1"_s.arg(port));
        }
        QCOMPARE(words, QStringList(
                            {u"COM1: serial port of the PC (HERE/dev/ttyS0)"_s,
                             u"COM5: USB serial adapter, <b>Maker & Sons</b>, serial number A5 (HERE/dev/ttyUSB0)"_s,
                             u"COM6: does not exist (HERE/dev/ttyUSB1)"_s, u"COM7: "_s + computer.lines[7]->device()}));
        QVERIFY(computer.com(5)->toolTip().contains(u"&lt;b&gt;Maker"));
        QCOMPARE(computer.com(7)->toolTip(), words[3]);
    }

    /// A first start without a port searches again, and ends when the operator says so.
    void noPort()
    {
        Computer computer({});
        computer.messages.answers = {Messages::Answer::Yes};
        computer.open(true, 0);
        QTRY_COMPARE(computer.ended, 1);
        QCOMPARE(computer.messages.take().size(), 2);
    }

    void connection_data()
    {
        // What the interface says to each question, in pieces that arrive one by one.
        const Rows<Replies, bool, int> row("replies", "found", "asked");
        const QByteArrayList answer = {interfaceBanner()};
        row("in pieces", {{"T", "OLM", "AR"}}, true, 1);
        row("at the last attempt", {{}, {}, {}, answer}, true, 4);
        row("silent", {}, false, 4);
        row("pieces of two attempts", {{"TOLMA"}, {"R"}}, false, 4);
        row("another device", Replies(4, {"&IC\r\nTOLMAR"}), false, 4);
        row("an event in between", {QByteArrayList{"R/A-00", "0012345X", "..\r\n"} + answer, answer}, true, 2);
    }
    void connection()
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
        computer.button("cmdProva")->click();
        for (int question = 1; question <= asked; ++question) {
            QTRY_COMPARE(received, QByteArray("&IC").repeated(question));
            QVERIFY(!computer.button("cmdOk")->isEnabled() && lblProva->text().contains(u"COM7"_s));
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
        QCOMPARE(computer.messages.take().join(u'|'),
                 found ? u"Information: "_s + computer.texts[Text::ConnessioneEffettuata]
                       : u"Exclamation: "_s + computer.texts[Text::ImpossibileStabilireCollegamento]);
        QVERIFY(computer.isFree(7) && computer.button("cmdOk")->isEnabled() && lblProva->text().isEmpty());
        QCOMPARE(received.size(), 3 * asked);
    }

    /// Asked at once and again by the button; what was read stays when nobody answers.
    void reading()
    {
        Texts texts;
        FakeMessages messages;
        QPointer<frmConfInt> window = new frmConfInt(texts, messages);
        QSignalSpy wanted(window, &frmConfInt::Leggi);
        window->show();
        QTRY_COMPARE(wanted.size(), 1);
        window->configurationRead(parseReply("RS_C CH:1 ENABLE", ""));
        const QString before = shown(window, configuration);
        control(window, u"cmdLeggi"_s)->click();
        QVERIFY(wanted.size() == 2 && !control(window, u"cmdLeggi"_s)->isEnabled());
        window->configurationRead({});
        QVERIFY(shown(window, configuration) == before && control(window, u"cmdLeggi"_s)->isEnabled());
        window->notOnLine();
        QCOMPARE(messages.take(),
                 (QStringList{u"Critical: CONNESSIONE IMPOSSIBILE!"_s,
                              u"Critical: Interfaccia multiprotocollo non in linea\r\nCONNESSIONE IMPOSSIBILE!"_s}));
        QVERIFY(window->isVisible()); // until the operator has read it
        QTRY_VERIFY(!window);
    }
};

QTEST_MAIN(TestGuiLink)
#include "tst_gui_link.moc"
