#pragma once

#include "platform/Result.h"

#include <QByteArray>

#include <functional>

/// The file operations of the program, in steps that a power cut can fall between.
///
/// A file never changes in place: new content is written beside the target, flushed, renamed over it, and the folder is
/// flushed, so that at every instant either the old or the new file stands there whole. New files are readable by their
/// owner only.
///
/// A target that is a link is followed, and stays: the file that it leads to is replaced. A link that leads nowhere is
/// NotFound, whatever is no regular file is NotRegularFile, and neither is touched.
class Disk
{
public:
    enum class Step { Write, Flush, Rename, FlushFolder, Remove, MakeFolder, MakeLink };

    Disk() = default;
    virtual ~Disk() = default;
    Disk(const Disk &) = delete;
    Disk &operator=(const Disk &) = delete;

    /// Copies @p source over @p target (existing or not), byte for byte.
    Result<void> copy(const QString &source, const QString &target);
    /// Makes @p content the content of @p target by way of a file of that @p name beside it.
    Result<void> replaceContent(const QString &target, const QByteArray &content, const QString &name);
    Result<void> rename(const QString &from, const QString &to);
    /// Begins to flush all that was written in the file system of @p folder, which takes as long as it takes.
    /// @return what does it, for a thread of its own
    std::function<Result<bool>()> flushAll(const QString &folder);
    /// Makes the names below @p folder last, after files were put there.
    Result<void> flushNames(const QString &folder) { return flushFolder(folder + QLatin1Char('/')); }
    /// No fault when the file does not exist.
    Result<void> remove(const QString &path);
    /// Single level: the parent must exist. @return AccessDenied also when something else than a folder has the name
    Result<void> makeFolder(const QString &path);
    /// Makes a link that leads to @p target, which need not exist. What stands at @p path stays, and is NotRegularFile.
    Result<void> makeLink(const QString &path, const QString &target);

protected:
    /// Called before each step; a fault is what the step ends with, as if it were the device's. The tests record the
    /// order of the steps here and stop at the n-th.
    virtual Result<void> before(Step step, const QString &path);

private:
    friend class FreshFile;

    Result<void> write(int file, const QString &path, const char *bytes, qsizetype count);
    Result<void> renameOnly(const QString &from, const QString &to);
    Result<void> finish(int file, const QString &beside, const QString &target);
    Result<void> flushFolder(const QString &path);
};

/// What errno says about @p path.
Fault systemFault(const QString &path);

/// Files that this program may open besides those that it has open now.
size_t openFilesLeft();

/// Bytes that this user may still fill on the device of @p folder; the largest number when that cannot be told.
qint64 freeBytes(const QString &folder);

/// From here on, files that this process makes are readable by their owner only.
void keepFilesPrivate();
