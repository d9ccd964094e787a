#pragma once

// The built programs, started and used as a user would.

#include "support/Fixtures.h"

#include <QDeadlineTimer>
#include <QProcess>
#include <QStandardPaths>

#include <csignal>

inline QString program(const char *name)
{
    return qEnvironmentVariable("KOR_PROGRAMS") + QLatin1Char('/') + QLatin1String(name);
}

/// A running program whose lines are awaited.
class Running
{
public:
    Running(const char *name, const QStringList &arguments, const QStringList &environment = {})
    {
        process.setEnvironment(QProcess::systemEnvironment() + environment);
        process.start(program(name), arguments);
    }

    /// Waits until @p text has been told @p times.
    bool tells(const char *text, int times = 1)
    {
        const QDeadlineTimer patience(30'000);
        while (output.count(text) < times) {
            if (patience.hasExpired() || (process.state() == QProcess::NotRunning && process.bytesAvailable() == 0)) {
                qWarning("told %lld times, in all: ...%s", qint64(output.count(text)), output.right(600).constData());
                return false;
            }
            process.waitForReadyRead(100);
            output += process.readAllStandardOutput();
        }
        return true;
    }

    void say(const QByteArray &line)
    {
        process.write(line + '\n');
        process.waitForBytesWritten();
    }

    /// That it does not start at all, for a reason which @p text is part of.
    bool refuses(const char *text)
    {
        process.waitForFinished();
        const QByteArray reason = process.readAllStandardError();
        if (process.exitCode() == 2 && reason.contains(text) && reason.count('\n') == 1 && output.isEmpty() &&
            process.readAllStandardOutput().isEmpty())
            return true;
        qWarning("exit code %d, told %s", process.exitCode(), reason.constData());
        return false;
    }

    /// Ends it by @p signal. @return its exit code, -1 when it crashed or does not end
    int end(int signal = SIGTERM)
    {
        ::kill(static_cast<pid_t>(process.processId()), signal);
        const bool finished = process.waitForFinished(10'000);
        output += process.readAllStandardOutput();
        return finished && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    QProcess process;
    QByteArray output;
};

/// A program folder whose port 7 is the simulated interface's link.
struct Site : TestFolder {
    QStringList interface(const QStringList &more = {}) const
    {
        return QStringList{u"--link"_s, directory.filePath(u"Porte/COM7"_s)} + more;
    }
    QStringList console(const QStringList &more = {}) const
    {
        return QStringList{u"--console"_s, u"--folder"_s, directory.path()} + more;
    }
    static QString day() { return ArchiveName::events(QDate::currentDate().toString(u"dd-MM-yyyy"_s)); }
};

/// A display with a window manager, and somebody at its keyboard.
class Desktop
{
public:
    Desktop()
    {
        server.start(u"Xvfb"_s, listOf("-displayfd,1,-screen,0,1024x768x24"));
        if (!server.waitForReadyRead())
            return;
        environment = {u"QT_QPA_PLATFORM=xcb"_s, u"DISPLAY=:"_s + QString::fromLatin1(server.readLine().trimmed())};
        manager.setEnvironment(QProcess::systemEnvironment() + environment);
        manager.start(u"openbox"_s, {});
    }
    ~Desktop()
    {
        for (QProcess *process : {&manager, &server}) {
            process->kill();
            process->waitForFinished();
        }
    }

    bool isThere()
    {
        return !environment.isEmpty() && manager.waitForStarted() &&
               !QStandardPaths::findExecutable(u"xdotool"_s).isEmpty();
    }
    void press(const char *keys)
    {
        const QStringList all = QString::fromLatin1(keys).split(u' ');
        for (const QString &one : all) {
            run({u"key"_s, one});
            QTest::qWait(500);
        }
    }
    void type(const QString &text) { run({u"type"_s, u"--delay"_s, u"80"_s, text}); }
    /// Waits for a window whose title matches @p title.
    bool shows(const QString &title, int seconds = 10)
    {
        return QTest::qWaitFor(
            [&] {
                return !run({u"search"_s, u"--onlyvisible"_s, u"--name"_s, title}).isEmpty();
            },
            seconds * 1000);
    }
    /// Waits until no window has shown such a title for a second.
    bool hides(const QString &title)
    {
        return QTest::qWaitFor([&] { return !shows(title, 1); }, 10'000);
    }

    QStringList environment;

private:
    QByteArray run(const QStringList &arguments)
    {
        QProcess tool;
        // Titles and typed text are UTF-8, whatever the language of the tests.
        tool.setEnvironment(QProcess::systemEnvironment() + environment + QStringList{u"LC_ALL=C.UTF-8"_s});
        tool.start(u"xdotool"_s, arguments);
        tool.waitForFinished();
        return tool.readAllStandardOutput().trimmed();
    }

    QProcess server;
    QProcess manager;
};
