#pragma once

#include <unistd.h>

#include <utility>

/// Owns a file descriptor; negative when there is none.
class Descriptor
{
public:
    explicit Descriptor(int file) : m_file(file) {}
    Descriptor(Descriptor &&other) noexcept : m_file(std::exchange(other.m_file, -1)) {}
    ~Descriptor()
    {
        if (m_file >= 0)
            ::close(m_file);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    Descriptor &operator=(Descriptor &&) = delete;

    int get() const { return m_file; }

private:
    int m_file;
};
