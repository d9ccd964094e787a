// The program beside a login manager that is a mock, on a bus of the test's own.

#include "archives/Tables.h"
#include "mainwindow/Program.h"
#include "support/Fixtures.h"
#include "support/UnixSocket.h"

#include "platform/PseudoTerminal.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QStandardPaths>

namespace {

const QString manager = u"org.freedesktop.login1.Manager"_s;

/// A bus, and on it the mock.
class Bus
{
public:
    bool start()
    {
        m_daemon.start(u"dbus-daemon"_s,
                       {u"--session"_s, u"--nofork"_s, u"--print-address"_s, u"--address"_s, address});
        if (!m_daemon.waitForReadyRead())
            return false;
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", address.toLatin1());
        m_mock.start(u"/usr/bin/python3"_s, {u"-m"_s, u"dbusmock"_s, u"--template"_s, u"logind"_s});
        return QTest::qWaitFor(
            [this] { return call(manager, u"ListInhibitors"_s).type() == QDBusMessage::ReplyMessage; });
    }
    ~Bus()
    {
        QDBusConnection::disconnectFromBus(u"test"_s);
        for (QProcess *process : {&m_mock, &m_daemon}) {
            process->kill();
            process->waitForFinished();
        }
    }

    /// What is held off, and how.
    QStringList held() const
    {
        QStringList all;
        const auto list = call(manager, u"ListInhibitors"_s).arguments().value(0).value<QDBusArgument>();
        for (list.beginArray(); !list.atEnd();) {
            QString what, who, why, mode;
            uint user = 0, process = 0;
            list.beginStructure();
            list >> what >> who >> why >> mode >> user >> process;
            list.endStructure();
            all.append(QStringList({what, mode, why}).join(u'|'));
        }
        all.sort();
        return all;
    }
    void prepareForSleep(bool isAhead) const
    {
        call(u"org.freedesktop.DBus.Mock"_s, u"EmitSignal"_s,
             {manager, u"PrepareForSleep"_s, u"b"_s, QVariantList{isAhead}});
    }

    QTemporaryDir here;
    const QString address = u"unix:path="_s + here.filePath(u"bus"_s);

private:
    QDBusMessage call(const QString &interface, const QString &method, const QVariantList &arguments = {}) const
    {
        QDBusMessage message = QDBusMessage::createMethodCall(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
                                                              interface, method);
        message.setArguments(arguments);
        return QDBusConnection::connectToBus(address, u"test"_s).call(message);
    }

    QProcess m_daemon, m_mock;
};

const QStringList all = {u"handle-lid-switch|block|Events of the interface are received"_s,
                         u"idle|block|Events of the interface are received"_s,
                         u"sleep|block|Events of the interface are received"_s};

/// A program that listens on port 7 from Friday evening on, with a time band on Saturday.
struct Site : TestFolder {
    Site()
    {
        addUsers({{u"1"_s, u"TX"_s, u"Rossi"_s, u"Mario"_s}});
        write(u"Impost.stp"_s, "COM=7\r\nLINGUA=2\r\nNUMEVOD=25\r\nCHECK=60\r\nPRN=-1\r\n");
        if (program.prepare(2, {}))
            qFatal("the program cannot be prepared");
        Result<Database> bands = archives.open(ArchiveName::Bands, Database::Use::ThrowAway);
        if (!bands || !bands.value().execute("INSERT INTO Fascie VALUES ('','','','','','X','','00:00','23:59')"))
            qFatal("no band");
        QObject::connect(&interface, &PseudoTerminal::readyRead, [this] { asked += interface.read(); });
        clock.moment = QDateTime(QDate(2004, 3, 5), QTime(22, 30, 0));
        program.keepAwake(awake);
        program.load();
        program.openLink();
    }
    void sleep(qint64 seconds)
    {
        clock.moment = clock.moment.addSecs(seconds);
        clock.slept += seconds * 1000;
    }

    FakeClock clock;
    FakePrinters printers;
    PseudoTerminal interface {
        directory.filePath(u"Porte/COM7"_s)
    };
    QByteArray asked;
    Awake awake{clock};
    Program program{{directory.path()}, clock, printers};
};

} // namespace

class TestAwake : public QObject
{
    Q_OBJECT

private:
    Bus bus;

private Q_SLOTS:
    void initTestCase()
    {
        if (!bus.start())
            QSKIP("there is no dbus-daemon or no python3-dbusmock");
    }

    /// While the port is open, and no longer, whoever closes it.
    void held()
    {
        Site site;
        QVERIFY(!site.program.serial().portOpen());
        QTRY_VERIFY(site.interface.open().ok());
        site.clock.milliseconds += 5000;
        site.program.link().wake();
        QTRY_COMPARE(bus.held(), all);
        site.program.link().suspend();
        QTRY_COMPARE(bus.held(), QStringList());
        site.program.link().objImpCom_Chiudi({});
        QTRY_COMPARE(bus.held(), all);
        site.interface.close();
        QTRY_COMPARE(bus.held(), QStringList());
        // What is granted after it has been given up is given back.
        site.awake.hold(u"why"_s);
        site.awake.release();
        QTRY_COMPARE(bus.held(), QStringList());
    }

    void wakes_data()
    {
        const Rows<bool, bool> row("announced", "portIsAway");
        row("announced", true, false);
        row("seen by the clock", false, false);
        row("port away", true, true);
    }
    void wakes()
    {
        QFETCH(bool, announced);
        QFETCH(bool, portIsAway);
        Site site;
        QVERIFY(site.interface.open().ok());
        if (!portIsAway) {
            site.clock.milliseconds += 5000;
            site.program.link().wake();
            QTRY_COMPARE(bus.held(), all);
            QTRY_COMPARE(site.asked, QByteArray("&IC"));
            site.interface.write(interfaceBanner() + "\rRS_C CH:1 ENABLE\rVERSIONE 1.4\r");
            QTRY_COMPARE(site.program.link().link(), LinkMonitor::Link::Answering);
        } else {
            QTest::qWait(200);
        }
        takeNotices(site.program.notices());
        QVERIFY(!site.program.timeProgramme().isEnabled());

        if (announced)
            bus.prepareForSleep(true);
        site.sleep(9 * 3600 + 5);
        if (announced)
            bus.prepareForSleep(false);
        else
            site.awake.look();
        QTRY_VERIFY(site.program.timeProgramme().isEnabled());
        QTRY_COMPARE(site.asked, QByteArray("&IC").repeated(portIsAway ? 1 : 2));
        QVERIFY(site.archives.exists(ArchiveName::events(u"06-03-2004"_s)));
        QCOMPARE(
            takeNotices(site.program.notices()),
            QStringList{
                u"The PC was asleep: for 9:00:05 (h:min:s), from 05/03/2004 22:30:00, the program received nothing."_s});
        // Told once.
        site.awake.look();
        QVERIFY(site.program.notices().isEmpty());
    }

    /// Somebody listens where the bus should be, and says nothing.
    void silentBus()
    {
        const QTemporaryDir here;
        const UnixSocket silent(here.filePath(u"bus"_s), SOCK_STREAM);
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + silent.path());
        const Heartbeat heart;
        {
            Site site;
            QVERIFY(site.interface.open().ok());
            site.clock.milliseconds += 5000;
            site.program.link().wake();
            QVERIFY(site.program.serial().portOpen());
            QTRY_VERIFY(heart.beats > 50);
        }
        QVERIFY(heart.longest < 1000);
    }
};

QTEST_GUILESS_MAIN(TestAwake)
#include "tst_awake.moc"
