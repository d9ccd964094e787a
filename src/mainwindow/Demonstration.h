#pragma once

#include "platform/Result.h"

#include <QProcess>
#include <QTemporaryDir>

/// A program folder of its own with a few users, and a simulated interface on its port 1 that sends events of these
/// users and of codes that nobody has. Everything goes when this object does.
class Demonstration
{
public:
    /// @param programs      folder with kor-simulator
    /// @param installation  folder with the archive templates
    Demonstration(QString programs, QString installation)
        : m_programs(std::move(programs)), m_installation(std::move(installation))
    {
    }
    ~Demonstration();
    Demonstration(const Demonstration &) = delete;
    Demonstration &operator=(const Demonstration &) = delete;

    /// Makes the folder and starts the interface; waits a few seconds for it at most.
    Result<void> start();
    QString folder() const { return m_folder.path(); }
    static constexpr int Port = 1;

    /// Makes a program folder with the few users of an existing one.
    /// @param installation  folder with the archive templates
    static Result<void> layFolder(const QString &path, const QString &installation);

private:
    Result<void> startInterface();

    QString m_programs;
    QString m_installation;
    QTemporaryDir m_folder;
    QProcess m_interface;
};
