#include "archive/Output.h"

#include <QFileInfo>

namespace tool {

namespace {

class ToTerminal : public Output
{
public:
    Result<void> write(QByteArray &bytes, const QDeadlineTimer &until) override { return m_output.write(bytes, until); }

private:
    StandardOutput m_output;
};

class ToFile : public Output
{
public:
    ToFile(Disk &disk, const QString &path) : m_file(disk, path) {}

    Result<void> create() { return m_file.create(); }
    Result<void> write(QByteArray &bytes, const QDeadlineTimer &) override
    {
        const bool isWritten = m_file.write(bytes) == bytes.size();
        bytes.clear();
        return isWritten ? Result<void>() : Result<void>(m_file.fault());
    }
    Result<void> end() override { return m_file.commit(); }

private:
    FreshFile m_file;
};

} // namespace

Result<std::unique_ptr<Output>> Output::open(const QString &path, Disk &disk)
{
    if (path.isEmpty())
        return std::unique_ptr<Output>(std::make_unique<ToTerminal>());
    auto file = std::make_unique<ToFile>(disk, QFileInfo(path).absoluteFilePath());
    const Result<void> created = file->create();
    return created ? Result<std::unique_ptr<Output>>(std::move(file)) : created.fault();
}

} // namespace tool
