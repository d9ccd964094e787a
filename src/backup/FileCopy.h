#pragma once

#include "archives/ArchiveBytes.h"
#include "archives/ArchiveStore.h"
#include "archives/PageCopy.h"
#include "backup/LotCheck.h"
#include "platform/FreshFile.h"
#include "platform/Task.h"

#include <memory>
#include <optional>

/// Copies one file of the program folder to a place beside its name in another folder, in turns.
class FileCopy : public Task
{
public:
    /// What a fault is about: a source that cannot be read costs this file only.
    enum class Side { Source, Target };

    /// @param source, @param target  must outlive this object; @param name  of the file below both folders; that of the
    /// copy is the same to the letter
    FileCopy(ArchiveStore &source, ArchiveStore &target, QString name);
    ~FileCopy() override;

    Result<bool> step(const QDeadlineTimer &until) override;
    Progress progress() const override { return {m_position, m_stamp.size}; }
    /// Which side the fault of the last step came from.
    Side side() const { return m_side; }
    /// The copy, where it counts only when all of it can be read.
    std::optional<LotCheck::Archive> toBeChecked() const;
    /// Puts the copy in the place of its name, once all that was written has been flushed, and read.
    Result<void> put();
    /// Ends the work. @return what removes the copy, for a thread of its own
    std::function<void()> giveUp();

    const QString &name() const { return m_name; }
    /// Of the file that is copied.
    const QString &path() const { return m_path; }

private:
    /// An archive that others may be writing to.
    struct Pages {
        Database source;
        Database target;
        std::optional<PageCopy> copy;
    };
    Result<void> begin();
    Result<void> beginPages();
    QString nameBeside() const;
    Result<bool> copyPages(const QDeadlineTimer &until);
    Result<bool> copyBytes(const QDeadlineTimer &until);
    Result<bool> finishBytes();
    Fault atSource(const Fault &fault);
    bool isBeingWritten() const;

    ArchiveStore &m_source;
    ArchiveStore &m_target;
    QString m_name;
    QString m_path;   ///< of the source
    QString m_real;   ///< the file itself, where that is a link
    QString m_copied; ///< path of the copy
    bool m_isArchive;
    bool m_isChecked; ///< see toBeChecked()
    QByteArray m_salt;
    Side m_side = Side::Target;
    FileStamp m_stamp;
    qint64 m_begun = 0;       ///< nanoseconds since 1970
    bool m_isSettled = false; ///< see LotCheck::Archive
    int m_attempts = 0;
    qint64 m_position = 0;
    std::optional<FreshFile> m_file;
    std::optional<ArchiveBytes> m_bytes;
    std::unique_ptr<Pages> m_pages;
};
