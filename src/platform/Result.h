#pragma once

#include <QString>

#include <optional>
#include <utility>
#include <variant>

/// What went wrong, in a form that needs no language: the window or the console makes the sentence.
enum class FaultCode {
    NotFound,        ///< file, port or template does not exist
    AccessDenied,    ///< exists, but this user may not read or write it
    AlreadyInUse,    ///< port or program folder is held by another program
    Locked,          ///< archive is locked by another program for the moment
    DiskFull,        ///< no room left on the device
    InputOutput,     ///< the device failed while reading or writing
    Damaged,         ///< content is not a readable archive, or not one of ours
    TemplateDamaged, ///< the template that an archive is made from is
    NotRegularFile,  ///< a folder, pipe or device stands where a file should
    TooLarge,        ///< more than the program takes in
    OwnFolder,       ///< the program folder, or one in it, was chosen as the place of its copy
    OwnRegister,     ///< the register in force, or a copy at work, was chosen as what replaces it
    NoRegister,      ///< an archive, but of no users
    NoTable,         ///< no text of separated values
    LineTooLong,     ///< a line of text that is longer than the program takes in
    NotOpen,         ///< asked of something that is closed
};

struct Fault {
    FaultCode code = FaultCode::InputOutput;
    QString subject; ///< path, port or key that the fault is about; never a sentence
};

/// A value or the fault that kept it from being made.
template<class T>
class [[nodiscard]] Result
{
public:
    Result(T value) : m_content(std::move(value)) {}
    Result(Fault fault) : m_content(std::move(fault)) {}

    bool ok() const { return std::holds_alternative<T>(m_content); }
    explicit operator bool() const { return ok(); }
    T &value() { return std::get<T>(m_content); }
    const T &value() const { return std::get<T>(m_content); }
    const Fault &fault() const { return std::get<Fault>(m_content); }

private:
    std::variant<T, Fault> m_content;
};

template<>
class [[nodiscard]] Result<void>
{
public:
    Result() = default;
    Result(Fault fault) : m_fault(std::move(fault)) {}

    bool ok() const { return !m_fault; }
    explicit operator bool() const { return ok(); }
    const Fault &fault() const { return *m_fault; }

private:
    std::optional<Fault> m_fault;
};
