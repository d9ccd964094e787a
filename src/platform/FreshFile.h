#pragma once

#include "platform/Disk.h"

#include <QIODevice>

/// A file that stands under its name only when it is whole; until then the one that was there before stays.
///
/// It is written beside its target under a name that no other file has, and is gone with this object unless commit()
/// has succeeded. Its target may be anywhere; links are followed as by Disk. A new file is its owner's alone, one
/// that replaces another keeps the rights of that.
class FreshFile : public QIODevice
{
public:
    /// @param disk  must outlive this object
    FreshFile(Disk &disk, const QString &target);
    ~FreshFile() override;

    Result<void> create();
    /// Waits until the next mebibyte or so lies on the device, so that the flush of commit() finds little to do.
    /// @return true when all that is written has been waited for
    bool settle();
    /// Flushes the file and puts it in the place of its target.
    Result<void> commit();
    /// Why a write failed; InputOutput when none did.
    const Fault &fault() const { return m_fault; }

    qint64 size() const override { return m_size; }
    bool seek(qint64 position) override;

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *bytes, qint64 count) override;

private:
    Disk &m_disk;
    QString m_target;
    QString m_beside; ///< "" when there is none
    int m_file = -1;
    qint64 m_size = 0;
    qint64 m_begun = 0;   ///< up to here the way to the device has begun
    qint64 m_settled = 0; ///< up to here it has been waited for
    Fault m_fault;
};
