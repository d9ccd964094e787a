#pragma once

#include "platform/Result.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <optional>

/// What carries the bytes between the program and the interface.
class Transport : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// @return NotFound, AccessDenied or AlreadyInUse (also when it is open already), InputOutput for a device that
    ///         carries nothing
    virtual Result<void> open(const QString &device) = 0;
    virtual void close() = 0;
    virtual bool isOpen() const = 0;
    /// The device that is open, or was the last one.
    virtual QString deviceName() const = 0;

    /// All that has come; what is not read stays, and holds the device up when it becomes too much.
    virtual QByteArray read() = 0;
    virtual bool hasMore() const = 0;
    /// Sends @p bytes without waiting. @return NotOpen when nothing is open
    virtual Result<void> write(const QByteArray &bytes) = 0;

    /// Tells the interface by a line beside the data whether it is enabled: true asserts the line. A device without
    /// such a line ignores it.
    virtual void setEnableLine(bool asserted) = 0;
    /// What the device says of that line; nothing while it is closed or has none.
    virtual std::optional<bool> enableLine() = 0;

Q_SIGNALS:
    /// Bytes have come.
    void readyRead();
    /// The device failed or was pulled out, and has been closed. @p last  what it had still brought
    void lost(const QByteArray &last);
};
