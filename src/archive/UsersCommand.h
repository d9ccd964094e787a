#pragma once

#include "archive/Command.h"
#include "archive/EventLines.h"
#include "archive/Output.h"
#include "startup/Protocol.h"

namespace tool {

/// The register in lines.
QByteArray userLines(const QList<User> &users, const LineForm &form, const Texts &texts);

/// Writes the users of the register, with notes and truncated codes, in the order of the register's window.
class UsersCommand : public Command
{
public:
    /// All must outlive this object.
    /// @param protocol  that codes are truncated by, whatever the register holds
    UsersCommand(const Site &site, const LineForm &form, Protocol protocol, Output &output)
        : m_site(site), m_form(form), m_protocol(protocol), m_pending(output)
    {
    }

    Result<bool> step(const QDeadlineTimer &until) override;

private:
    Result<QList<User>> read();

    const Site m_site;
    const LineForm m_form;
    const Protocol m_protocol;
    Pending m_pending;
    bool m_isRead = false;
};

} // namespace tool
