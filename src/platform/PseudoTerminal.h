#pragma once

#include "platform/Result.h"

#include <QByteArray>
#include <QObject>
#include <QTimer>

#include <memory>

class QSocketNotifier;

/// The far side of a serial line that exists only in this computer: what is written here is received by the program
/// that opens device(), and the other way round. The line is raw, 9600 baud by name, and has no modem lines.
///
/// Nothing here waits. The line stays whole while programs open and leave it; only close() ends it, and for a program
/// that has the device open this is an adapter pulled out.
class PseudoTerminal : public QObject
{
    Q_OBJECT

public:
    /// @param link  symbolic link that leads to the device while the line is open; "" for none
    explicit PseudoTerminal(QString link, QObject *parent = nullptr);
    ~PseudoTerminal() override;

    /// Makes a new device, and the link to it: a missing folder is made, another symbolic link is replaced.
    /// @return AlreadyInUse when something that is no symbolic link has the link's name; AccessDenied when the link or
    /// its folder cannot be made; InputOutput when the system gives no device
    Result<void> open();
    /// Ends the line and removes the link, unless it leads to another device by now.
    void close();
    bool isOpen() const { return m_master >= 0; }

    const QString &link() const { return m_link; }
    /// Path of the device; it has another one after each opening. "" while closed.
    const QString &device() const { return m_device; }
    /// Whether a program has the device open; always true on a system that does not tell.
    bool hasProgram() const { return isOpen() && (m_watch < 0 || m_programs > 0); }
    /// Bytes that were written and that no program has read; 0 while closed. A byte may take a moment to be counted.
    int unread() const;

    /// Some of the bytes that are waiting, empty when there are none.
    QByteArray read();
    /// @return how many of @p bytes the line took, from the front; when not all, writable() follows as soon as there is
    ///         room. 0 while closed.
    qsizetype write(QByteArrayView bytes);

Q_SIGNALS:
    void readyRead();
    void writable();
    void programCame();  ///< a program has opened the device that nobody had open
    void programsLeft(); ///< for a moment now no program has had it open

private:
    Result<void> makeLink();
    void watchPrograms();
    void countPrograms();
    void afterLastProgram();

    QString m_link;
    QString m_device;
    int m_master = -1;
    int m_slave = -1;
    int m_watch = -1; ///< notifications about openings of the device
    int m_programs = 0;
    std::unique_ptr<QSocketNotifier> m_reading;
    std::unique_ptr<QSocketNotifier> m_writing;
    std::unique_ptr<QSocketNotifier> m_watching;
    QTimer m_left;
};
