#pragma once

#include "platform/Result.h"

#include <memory>

class QIODevice;

/// An OLE2 compound file with one stream, written from front to end.
class CompoundFile
{
public:
    /// @param device  open for writing, random access, empty; must outlive this object
    /// @param stream  name of the stream, ASCII
    CompoundFile(QIODevice &device, const char *stream);
    ~CompoundFile();
    CompoundFile(const CompoundFile &) = delete;
    CompoundFile &operator=(const CompoundFile &) = delete;

    /// Appends @p count bytes to the stream. @return InputOutput when the device failed
    Result<void> write(const char *bytes, qsizetype count);
    /// Ends the stream and writes the directory and the tables of blocks. The file is whole when this succeeds.
    Result<void> close();

private:
    struct Handles;
    std::unique_ptr<Handles> m_handles; ///< null when the file could not be begun
};
