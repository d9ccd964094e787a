#include "platform/ServiceManager.h"
#include "support/Fixtures.h"
#include "support/UnixSocket.h"

#include <QThread>

class TestService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void watchdogIsFedByTheLoop()
    {
        const QTemporaryDir here;
        const UnixSocket manager(here.filePath(u"notify"_s), SOCK_DGRAM);
        qputenv("NOTIFY_SOCKET", manager.path());
        qputenv("WATCHDOG_USEC", "100000");
        ServiceManager service;
        service.ready();
        QCOMPARE(manager.take(), QByteArrayList{"READY=1"});
        QByteArrayList fed;
        QTRY_VERIFY((fed += manager.take()).size() >= 3);
        QCOMPARE(fed.count("WATCHDOG=1"), fed.size());
        // A loop that is held.
        QThread::msleep(200);
        QCOMPARE(manager.take(), QByteArrayList());
        fed.clear();
        QTRY_VERIFY(!(fed += manager.take()).isEmpty());
        service.stopping();
        QCOMPARE(manager.take().last(), QByteArray("STOPPING=1"));
    }
};

QTEST_GUILESS_MAIN(TestService)
#include "tst_service.moc"
