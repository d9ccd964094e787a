#include "link/ConfigQuery.h"
#include "support/TestLine.h"

#include <QSignalSpy>

namespace {

const QByteArray banner = interfaceBanner() + "\r";
const QByteArray line2 = "WIEGAND 26 BIT SITO +CH CH:1234 ENABLE J1\r";
const QByteArray line3 = "VERSIONE 1.4\r";
const QByteArray one = "R/A-000000001X..\r\n";
const QByteArray two = "K/B-000000002.D.\r\n";

QString protocolText(const InterfaceConfig &c)
{
    return c.told == InterfaceConfig::Told::BannerOnly ? u"-1"_s : c.protocol;
}

QString versionText(const InterfaceConfig &c)
{
    return c.version.value_or(c.told == InterfaceConfig::Told::All ? u"--"_s : QString());
}

/// All fields of a configuration on one line.
QString asText(const InterfaceConfig &c)
{
    const bool isAll = c.told == InterfaceConfig::Told::All;
    const auto text = [isAll](bool set, const char *yes, const char *no) {
        return isAll ? QString::fromLatin1(set ? yes : no) : QString();
    };
    return QStringList{protocolText(c),
                       QString::number(c.hasSiteCode),
                       text(c.isEnabled, "ENABLE", "DISABLE"),
                       c.channels,
                       text(c.isJ1On, "ON", "OFF"),
                       QString::number(c.hasChannelInfo),
                       QString::number(c.isBridgeOn),
                       QString::number(c.isPcOn),
                       versionText(c)}
        .join(u'|');
}

/// Runs a query over what comes in each of its attempts, and behind it.
struct Run {
    Run(const QByteArray &unfinished, QList<QByteArray> attempts, const QByteArray &behind = {})
    {
        query.start(unfinished);
        pump();
        while (!attempts.isEmpty() || query.isRunning()) {
            feed(attempts.isEmpty() ? QByteArray() : attempts.takeFirst());
            if (query.isRunning())
                pass(query.deadline());
        }
        feed(behind);
        pass(now + 2000);
    }
    void feed(const QByteArray &bytes)
    {
        for (const char byte : bytes) {
            if (query.takesInput())
                query.feed(byte, now);
            else
                handedBack += byte;
            pump();
        }
    }
    void pass(qint64 until)
    {
        now = until;
        query.tick(now);
        pump();
    }
    void pump()
    {
        if (query.wantsToSend()) {
            ++asked;
            query.sent(now);
        }
        if (const auto result = query.takeResult())
            config = *result;
        handedBack += query.takeHandedBack();
    }

    ConfigQuery query;
    qint64 now = 0;
    std::optional<InterfaceConfig> config;
    QByteArray handedBack;
    int asked = 0;
};

} // namespace

class TestQuery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void replies_data()
    {
        const Rows<QByteArray, QByteArray, QString> row("second", "third", "config");
        const QByteArray version = "VERSIONE 1.4";
        row("all", line2.chopped(1), version, u"WIEGAND 26 BIT|1|ENABLE|1234|ON|1|1|1|1.4"_s);
        row("channel before site loses the site", "WIEGAND 26 BIT +CH SITO CH:12 ENABLE", "123456789abcdef",
            u"WIEGAND 26 BIT|0|ENABLE|12|OFF|1|1|1|abc"_s);
        row("bare", "ISO2 CH:1 DISABLE PC BRIDGE", "", u"ISO2|0|DISABLE|1|OFF|0|0|0|--"_s);
        row("J1 not last", "TOLMAR CH: J1 ENABLE", "short", u"TOLMAR|0|ENABLE||OFF|0|1|1|"_s);
        row("empty second line", "", version, u"-1|0||||0|0|0|VERSIONE 1.4"_s);
        row("no channel list", "WIEGAND 26 BIT ENABLE", version, u"-1|0||||0|0|0|VERSIONE 1.4"_s);
        row("no blank behind the list", "WIEGAND 26 BIT CH:1234", version, u"-1|0||||0|0|0|VERSIONE 1.4"_s);
        row("list at the front", "CH:1 ", "", u"|0|DISABLE|1|OFF|0|1|1|--"_s);
    }
    void replies()
    {
        QFETCH(QByteArray, second);
        QFETCH(QByteArray, third);
        QTEST(asText(parseReply(second, third)), "config");
    }

    void attempts_data()
    {
        const Rows<QList<QByteArray>, int, QString> row("attempts", "asked", "config"); // its protocol and version
        const QString read = u"WIEGAND 26 BIT|1.4"_s;
        const QByteArray answer = banner + line2 + line3;
        row("at once", {answer}, 1, read);
        row("third attempt", {{}, {}, answer}, 3, read);
        row("wrong line asks again at once", {"noise\r" + answer}, 2, read);
        row("banner cut by the second", {answer.left(9), answer.mid(9)}, 2, read);
        row("silence", {}, 3, u"|"_s);
        row("LF kept in the line", {"\n" + answer}, 3, u"|"_s);
        row("no third line", {banner + line2}, 1, u"WIEGAND 26 BIT|--"_s);
        row("second line cut", {banner + line2.left(20)}, 1, u"-1|"_s);
        row("second line without its end", {banner + line2.chopped(1)}, 1, u"WIEGAND 26 BIT|--"_s);
        row("third line cut", {banner + line2 + "VERSIONE 1"}, 1, u"WIEGAND 26 BIT|1"_s);
        row("empty second line", {banner + "\r" + line3}, 1, u"-1|VERSIONE 1.4"_s);
    }
    void attempts()
    {
        QFETCH(QList<QByteArray>, attempts);
        const Run run({}, attempts);
        QVERIFY(run.config);
        QTEST(run.asked, "asked");
        QTEST(protocolText(*run.config) + u'|' + versionText(*run.config), "config");
        QCOMPARE(run.handedBack.trimmed(), QByteArray());
    }

    void recordsAmongTheReply_data()
    {
        const Rows<QByteArray, QList<QByteArray>, QByteArray, QByteArray> row("before", "attempts", "behind",
                                                                              "handedBack");
        const QByteArray answer = banner + line2 + line3;
        row("before", {}, {one + answer}, {}, one);
        row("between", {}, {banner + one + line2 + two + line3}, {}, one + two);
        row("behind", {}, {answer + one}, two, one + two);
        row("begun before the query", one.left(7), {one.mid(7) + answer}, {}, one);
        row("only its LF missing", one.chopped(1), {"\n" + answer}, {}, one);
        row("cut by the end of an attempt", {}, {one.left(5), one.mid(5) + answer}, {}, one);
        row("cut by the end of the query", {}, {banner + line2 + one.left(9)}, one.mid(9), one);
        row("cut by the end of silence", {}, {{}, {}, one.left(4)}, one.mid(4), one);
        row("after noise with its own LF", {}, {"noise\n" + one, answer}, {}, one);
        row("late second answer", {}, {{}, answer}, one + banner + line2 + two + line3 + one, one + two + one);
        row("late after silence", {}, {{}, {}, {}}, answer + one, one);
    }
    void recordsAmongTheReply()
    {
        QFETCH(QByteArray, before);
        QFETCH(QList<QByteArray>, attempts);
        QFETCH(QByteArray, behind);
        const Run run(before, attempts, behind);
        QVERIFY(run.config);
        QTEST(run.handedBack, "handedBack");
        if (attempts.join().contains(line3))
            QCOMPARE(asText(*run.config), asText(parseReply(line2.chopped(1), line3.chopped(1))));
    }

    void rePowerMarksLeadToOneMoreQuery()
    {
        TestLine line;
        QSignalSpy ended(&line.link, &LinkMonitor::queryEnded);
        QSignalSpy stored(&line.log, &EventLog::stored);
        line.link.ApriCollegamento();
        const auto answer = [&](int queries) {
            QTRY_COMPARE(line.received, QByteArray("&IC").repeated(queries));
            line.interface.write(banner + line2 + line3);
            QTRY_COMPARE(ended.size(), queries);
        };
        line.interface.write(QByteArray("\0\x80", 2) + one);
        answer(1);
        QTRY_COMPARE(stored.size(), 1);
        // Within two seconds after a query: one more at their end, however many marks, wherever they stand.
        line.interface.write(QByteArray(2, '\0') + "R/A-00\x80" + one.mid(6));
        QTRY_COMPARE(stored.size(), 2);
        line.pass(1999);
        QCoreApplication::processEvents();
        QCOMPARE(line.received, QByteArray("&IC"));
        line.pass(1);
        answer(2);
        // Later: at once.
        line.pass(2000);
        QCOMPARE(line.received, QByteArray("&IC&IC"));
        line.interface.write(QByteArray("\x80", 1));
        answer(3);
        // A query that nobody answers changes nothing about the link.
        line.clock.milliseconds += 2000;
        line.interface.write(QByteArray("\0", 1));
        QTRY_COMPARE(line.received.size(), 12);
        line.pass(1000, 3);
        QCOMPARE(ended.size(), 4);
        QCOMPARE(line.link.link(), LinkMonitor::Link::Answering);
    }

    void noiseWithoutEndIsBounded()
    {
        Road<FakeSerial> line("COM=1\r\nLINGUA=2\r\n");
        QSignalSpy stored(&line.log, &EventLog::stored);
        line.serial.setInputLen(1);
        line.serial.setRThreshold(1);
        const QByteArray noise(1 << 16, 'n');
        const auto pour = [&](int megabytes) {
            for (int i = 0; i < 16 * megabytes; ++i)
                // No faster than it is taken, however busy the machine is.
                for (line.serial.receive(noise); !line.serial.input().isEmpty();)
                    QCoreApplication::processEvents();
        };
        pour(1);
        const qint64 before = residentPages();
        pour(10);
        line.link.LetturaConf();
        pour(10);
#ifndef KOR_SANITIZE // which keeps for a while what was freed
        QVERIFY2(residentPages() - before < 256, "a megabyte more");
#else
        Q_UNUSED(before)
#endif
        line.serial.receive("\r\n" + one + two);
        line.pass(1000, 3);
        QTRY_COMPARE(stored.size(), 2);
    }
};

QTEST_GUILESS_MAIN(TestQuery)
#include "tst_query.moc"
