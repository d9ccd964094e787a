#pragma once

#include "platform/Disk.h"
#include "platform/FileStamp.h"

#include <QFile>
#include <QIODevice>

#include <functional>
#include <optional>
#include <utility>

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

    /// Whether a file of this name stands beside a target that it did not come to take the place of.
    static bool isBeside(const QString &name) { return name.startsWith(QLatin1String(".kor-")); }

    Result<void> create();
    /// Waits until the next mebibyte or so lies on the device, so that the flush of commit() finds little to do.
    /// @return true when all that is written has been waited for
    bool settle();
    /// Has the device begin with what was written to @p beside, whose flush then finds little to do. May be called in
    /// any thread.
    static void beginFlush(const QString &beside);
    /// Gives the file up. What is on its way to a slow device holds up whoever removes it.
    /// @return what does that, for a thread of its own
    std::function<void()> giveUp();
    /// Flushes the file and puts it in the place of its target.
    Result<void> commit();
    /// Puts the file in the place of its target like commit(), but flushes neither it nor the folder: see
    /// Disk::flushAll(), for many files at once.
    /// @param modified  its time of modification, nanoseconds since 1970; @param rights  its rights
    Result<void> put(qint64 modified, mode_t rights);
    /// The file that it takes the place of: once created, what a link leads to.
    const QString &target() const { return m_target; }
    /// Where it is written to, for a library that writes by itself; "" when there is none.
    const QString &beside() const { return m_beside; }
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
    std::optional<Fault> m_unsettled; ///< that settle() was told of
};
