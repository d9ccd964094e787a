#include "backup/FileCopy.h"

#include "platform/RegularFile.h"

#include <QDateTime>
#include <QFileInfo>

namespace {

constexpr qsizetype bytesOfATurn = 256 << 10;
constexpr int pagesAtOnce = 16;
constexpr qint64 nanosecondsOfSecond = 1'000'000'000;

/// A file that changes again and again is left for the next time.
constexpr int mostAttempts = 3;

bool isArchiveName(const QString &name)
{
    const QString file = QFileInfo(name).fileName();
    return file.endsWith(QStringLiteral(".zeb"), Qt::CaseInsensitive) ||
           file.contains(QStringLiteral(".zeb.guasto"), Qt::CaseInsensitive);
}

} // namespace

FileCopy::FileCopy(ArchiveStore &source, ArchiveStore &target, QString name)
    : m_source(source),
      m_target(target),
      m_name(std::move(name)),
      m_path(source.folder().root() + QLatin1Char('/') + m_name),
      m_copied(target.folder().root() + QLatin1Char('/') + m_name),
      m_isArchive(isArchiveName(m_name)),
      // One that was set aside is damaged: it is copied as it is.
      m_isChecked(m_name.endsWith(QStringLiteral(".zeb"), Qt::CaseInsensitive))
{
}

FileCopy::~FileCopy()
{
    // The archive goes before the file that it stands in.
    m_pages.reset();
}

std::function<void()> FileCopy::giveUp()
{
    m_pages.reset();
    return m_file ? m_file->giveUp() : std::function<void()>([] {});
}

Fault FileCopy::atSource(const Fault &fault)
{
    m_side = Side::Source;
    return {fault.code, m_path};
}

bool FileCopy::isBeingWritten() const
{
    return m_isChecked && hasJournals(m_real);
}

Result<bool> FileCopy::step(const QDeadlineTimer &until)
{
    m_side = Side::Target;
    if (!m_file) {
        if (const Result<void> begun = begin(); !begun)
            return begun.fault();
        // It has gone since it was listed, as what only waits for a moment does.
        if (!m_file)
            return true;
    }
    return m_pages ? copyPages(until) : copyBytes(until);
}

Result<void> FileCopy::begin()
{
    const std::optional<FileStamp> stamp = stampOf(m_path);
    if (!stamp)
        return {};
    m_stamp = *stamp;
    const Result<QString> real = linkFollowed(m_path);
    m_real = real ? real.value() : m_path;
    m_begun = QDateTime::currentMSecsSinceEpoch() * 1'000'000;
    m_position = 0;
    m_file.emplace(m_target.folder().disk(), m_copied);
    if (Result<void> created = m_file->create(); !created)
        return created;
    // Whatever its name: a link may lead to an archive that is open.
    Result<ArchiveBytes> opened = ArchiveBytes::open(m_path);
    if (!opened)
        return atSource(opened.fault());
    m_bytes.emplace(std::move(opened.value()));
    if (m_isArchive) {
        Result<QByteArray> salt = m_bytes->read(0, ArchiveKeys::SaltSize);
        if (!salt)
            return atSource(salt.fault());
        m_salt = salt.value();
        if (m_isChecked && m_salt.size() < ArchiveKeys::SaltSize)
            return atSource({FaultCode::Damaged, m_path});
    }
    return isBeingWritten() ? beginPages() : Result<void>();
}

/// Name of the copy that is being written, below the target folder.
QString FileCopy::nameBeside() const
{
    const QString folder = QFileInfo(m_name).path();
    const QString file = QFileInfo(m_file->beside()).fileName();
    return folder == QLatin1String(".") ? file : folder + QLatin1Char('/') + file;
}

Result<void> FileCopy::beginPages()
{
    Result<Database> source = m_source.open(m_name, Database::Use::Untouched);
    if (!source)
        return atSource(source.fault());
    Result<Database> target = m_target.make(nameBeside(), Database::Use::ThrowAway, m_salt);
    if (!target)
        return target.fault();
    // It is thrown away when it does not become whole: a journal would only be one file more.
    if (Result<void> without = target.value().execute("PRAGMA journal_mode = OFF;"); !without)
        return without;
    m_pages = std::make_unique<Pages>(Pages{std::move(source.value()), std::move(target.value()), std::nullopt});
    Result<PageCopy> copy = PageCopy::begin(m_pages->source, m_pages->target);
    if (!copy)
        return copy.fault();
    m_pages->copy.emplace(std::move(copy.value()));
    // What is written while it is being copied must be copied the next time.
    m_stamp.modified -= nanosecondsOfSecond;
    return {};
}

Result<bool> FileCopy::copyPages(const QDeadlineTimer &until)
{
    do {
        const Result<bool> copied = m_pages->copy->step(pagesAtOnce);
        if (!copied)
            return copied.fault().subject == m_pages->source.path() ? Result<bool>(atSource(copied.fault())) : copied;
        if (!copied.value())
            continue;
        // The copy stands alone, without the journals of the original.
        if (const Result<void> left = m_pages->target.leaveLogMode(); !left)
            return left.fault();
        m_pages.reset();
        m_bytes.reset();
        return true;
    } while (!until.hasExpired());
    return false;
}

Result<bool> FileCopy::copyBytes(const QDeadlineTimer &until)
{
    do {
        const Result<QByteArray> bytes = m_bytes->read(m_position, bytesOfATurn);
        if (!bytes)
            return atSource(bytes.fault());
        if (bytes.value().isEmpty())
            return finishBytes();
        if (m_file->write(bytes.value()) < 0)
            return m_file->fault();
        m_position += bytes.value().size();
    } while (!until.hasExpired());
    return false;
}

/// Looks whether the source stayed as it was; else all begins anew.
Result<bool> FileCopy::finishBytes()
{
    const std::optional<FileStamp> now = stampOf(m_path);
    // Within the grain of its clock a file can change unseen.
    m_isSettled = m_begun - m_stamp.modified >= nanosecondsOfSecond;
    if (now != m_stamp || m_position != m_stamp.size || (!m_isSettled && isBeingWritten())) {
        m_bytes.reset();
        m_file.reset();
        if (++m_attempts == mostAttempts)
            return atSource({FaultCode::Locked, m_path});
        return false;
    }
    if (!m_isSettled)
        m_stamp.modified -= nanosecondsOfSecond;
    m_bytes.reset();
    return true;
}

std::optional<LotCheck::Archive> FileCopy::toBeChecked() const
{
    if (!m_file || !m_isChecked)
        return std::nullopt;
    return LotCheck::Archive{m_file->beside(), m_source.rawKey(m_salt), m_isSettled};
}

Result<void> FileCopy::put()
{
    if (!m_file)
        return {};
    if (m_isArchive) {
        const QString &file = m_file->target();
        if (Result<void> made = hasJournals(file) ? m_target.makeRoomAt(file) : Result<void>(); !made)
            return made;
    }
    return m_file->put(m_stamp.modified, m_stamp.rights);
}
