#include "platform/CompoundFile.h"

#include <QIODevice>

#include <gsf/gsf-outfile-msole.h>
#include <gsf/gsf-output-stdio.h>

#include <cstdio>

namespace {

struct Unref {
    void operator()(void *object) const { g_object_unref(object); }
};

template<class T>
using Object = std::unique_ptr<T, Unref>;

struct CloseStream {
    void operator()(std::FILE *stream) const { std::fclose(stream); }
};

ssize_t writeDevice(void *device, const char *bytes, size_t count)
{
    const qint64 written = static_cast<QIODevice *>(device)->write(bytes, static_cast<qint64>(count));
    return written < 0 ? 0 : written; // 0 is what a stream takes for a failure
}

int seekDevice(void *device, off64_t *offset, int whence)
{
    auto *target = static_cast<QIODevice *>(device);
    if (whence == SEEK_CUR)
        *offset += target->pos();
    else if (whence == SEEK_END)
        *offset += target->size();
    return target->seek(*offset) ? 0 : -1;
}

std::FILE *streamOf(QIODevice &device)
{
    std::FILE *stream = ::fopencookie(&device, "w", {nullptr, writeDevice, seekDevice, nullptr});
    // The tables of blocks are written in pieces of four bytes.
    if (stream)
        std::setvbuf(stream, nullptr, _IOFBF, 65536);
    return stream;
}

} // namespace

/// In the order in which one stands on another: what is made last goes first.
struct CompoundFile::Handles {
    explicit Handles(QIODevice &device) : stream(streamOf(device)) {}
    ~Handles()
    {
        // The library asks for a close before the last reference goes, also where nothing can be saved any more.
        if (content && !gsf_output_is_closed(content.get()))
            gsf_output_close(content.get());
        if (file && !gsf_output_is_closed(GSF_OUTPUT(file.get())))
            gsf_output_close(GSF_OUTPUT(file.get()));
        if (sink && !gsf_output_is_closed(sink.get()))
            gsf_output_close(sink.get());
    }
    Handles(const Handles &) = delete;
    Handles &operator=(const Handles &) = delete;

    std::unique_ptr<std::FILE, CloseStream> stream;
    Object<GsfOutput> sink;
    Object<GsfOutfile> file;
    Object<GsfOutput> content;
};

CompoundFile::CompoundFile(QIODevice &device, const char *stream) : m_handles(std::make_unique<Handles>(device))
{
    if (m_handles->stream)
        m_handles->sink.reset(gsf_output_stdio_new_FILE(stream, m_handles->stream.get(), TRUE));
    if (m_handles->sink)
        m_handles->file.reset(gsf_outfile_msole_new(m_handles->sink.get()));
    if (m_handles->file)
        m_handles->content.reset(gsf_outfile_new_child(m_handles->file.get(), stream, FALSE));
    if (!m_handles->content)
        m_handles.reset();
}

CompoundFile::~CompoundFile() = default;

Result<void> CompoundFile::write(const char *bytes, qsizetype count)
{
    if (!m_handles || !gsf_output_write(m_handles->content.get(), static_cast<size_t>(count),
                                        reinterpret_cast<const guint8 *>(bytes)))
        return Fault{FaultCode::InputOutput, {}};
    return {};
}

Result<void> CompoundFile::close()
{
    if (!m_handles || !gsf_output_close(m_handles->content.get()) ||
        !gsf_output_close(GSF_OUTPUT(m_handles->file.get())) || std::fflush(m_handles->stream.get()) != 0 ||
        std::ferror(m_handles->stream.get()) != 0)
        return Fault{FaultCode::InputOutput, {}};
    return {};
}
