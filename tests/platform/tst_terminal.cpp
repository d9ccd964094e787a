#include "platform/ConsoleOutput.h"
#include "platform/PseudoTerminal.h"
#include "platform/RegularFile.h"
#include "platform/TerminalPassword.h"
#include "support/Fixtures.h"
#include "support/Typist.h"

#include <QDir>
#include <QSignalSpy>

#include <numeric>

namespace {

/// All that can be read from a file that does not wait.
QByteArray readAll(int file)
{
    QByteArray all, part(1 << 16, '\0');
    for (ssize_t count = 0; (count = ::read(file, part.data(), std::size_t(part.size()))) > 0;)
        all += part.first(count);
    return all;
}

} // namespace

class TestTerminal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// A reader that has stopped holds nothing up, and finds every line when it goes on; past 10,000 the oldest go.
    void blockedPipeLosesNothing()
    {
        for (const auto &[lines, first] : {std::pair(9'000, 0), std::pair(20'000, 10'000)}) {
            std::array<int, 2> ends{};
            QCOMPARE(::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), 0);
            ::fcntl(ends[1], F_SETFL, 0); // as a shell leaves it
            QByteArrayList expected;
            for (int i = 0; i < lines; ++i)
                expected.append(QByteArray::number(i).rightJustified(60, '.'));
            QByteArray read;
            {
                const Redirected output(STDOUT_FILENO, ends[1]);
                ConsoleOutput console;
                for (const QByteArray &line : std::as_const(expected))
                    console.write(line);
                (void)QTest::qWaitFor([&] { return (read += readAll(ends[0])).endsWith(expected.last() + '\n'); });
            }
            // What the pipe took before it was full, and what waited.
            const QByteArrayList told = read.chopped(1).split('\n');
            const qsizetype early = told.indexOf(expected[first]);
            QCOMPARE(told, expected.first(early) + expected.sliced(first));
            QCOMPARE(::fcntl(ends[1], F_GETFL) & O_NONBLOCK, 0); // and as it finds it again
            ::close(ends[0]);
            ::close(ends[1]);
        }
    }

    void passwordIsAsked_data()
    {
        const Rows<QByteArray, QString> row("typed", "answer");
        row("with an accent", "perch\xC3\xA9\n", u"typed perch\u00E9"_s);
        row("nothing", "\n", u"typed "_s);
        row("given up by Ctrl+C", "apriti\x03", u"given up"_s);
        row("end of the input", "\x04", u"given up"_s);
    }
    /// Unseen, and the terminal echoes again afterwards.
    void passwordIsAsked()
    {
        QFETCH(QByteArray, typed);
        const Typist typist(typed, {});
        QFETCH(QString, answer);
        QVERIFY(TerminalPassword::isThere() && typist.echoes());
        QStringList answers;
        {
            TerminalPassword password;
            connect(&password, &TerminalPassword::typed, this,
                    [&](const QString &text) { answers.append(u"typed "_s + text); });
            connect(&password, &TerminalPassword::givenUp, this, [&] { answers.append(u"given up"_s); });
            password.ask(u"?"_s);
            QTRY_COMPARE(answers, QStringList{answer});
            QVERIFY(!typist.echoes());
        }
        ::fcntl(typist.terminal(), F_SETFL, O_NONBLOCK);
        QVERIFY(typist.echoes() && !readAll(typist.terminal()).contains("perch"));
    }

    void passwordFileIsItsOwners()
    {
        const BareFolder test;
        test.write(u"secret"_s, "apriti\n");
        const QString path = test.folder.path(u"secret"_s);
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner) && isOwnersOnly(path));
        for (const QFile::Permission other : {QFile::ReadGroup, QFile::ReadOther, QFile::WriteOther})
            QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | other) && !isOwnersOnly(path));
        QVERIFY(!isOwnersOnly(test.directory.path()) && !isOwnersOnly(path + u"s"_s));
    }

    void pseudoTerminal()
    {
        const BareFolder test;
        const QString link = test.directory.filePath(u"Porte/COM7"_s);
        PseudoTerminal line(link);
        QSignalSpy came(&line, &PseudoTerminal::programCame), left(&line, &PseudoTerminal::programsLeft);
        QSignalSpy writable(&line, &PseudoTerminal::writable);
        QVERIFY(line.open().ok() && !line.hasProgram());
        QCOMPARE(QFileInfo(link).symLinkTarget(), line.device());
        const auto open = [&line] {
            return Descriptor(::open(QFile::encodeName(line.device()).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK));
        };
        {
            const Descriptor program = open();
            QTRY_VERIFY(came.size() == 1 && line.hasProgram());
            // Any byte, either way, as it is.
            QByteArray bytes(256, '\0'), taken;
            std::iota(bytes.begin(), bytes.end(), '\0');
            QCOMPARE(line.write(bytes), 256);
            QTRY_COMPARE(line.unread(), 256);
            QCOMPARE(readAll(program.get()), bytes);
            QCOMPARE(::write(program.get(), bytes.constData(), 256), 256);
            QTRY_COMPARE(taken += line.read(), bytes);
            // A program that does not read holds nobody up.
            const qsizetype room = line.write(QByteArray(1 << 20, 'x'));
            QVERIFY(room > 0 && room < 1 << 20 && writable.isEmpty());
            taken.clear();
            QTRY_VERIFY((taken += readAll(program.get())).size() == room && writable.size() == 1);
        }
        QTRY_COMPARE(left.size(), 1);
        // Pulled out, for a program that has it open; its link goes with it, if it is still its own.
        const Descriptor program = open();
        line.close();
        QVERIFY(::read(program.get(), std::array<char, 1>().data(), 1) <= 0 && !QFileInfo(link).isSymLink());
        QCOMPARE(line.write("x") + line.unread() + line.read().size(), 0);
        test.write(u"Porte/COM7"_s, "no link");
        QCOMPARE(line.open().fault().code, FaultCode::AlreadyInUse);
        QVERIFY(!line.isOpen() && test.read(u"Porte/COM7"_s) == "no link");
    }
};

QTEST_GUILESS_MAIN(TestTerminal)
#include "tst_terminal.moc"
