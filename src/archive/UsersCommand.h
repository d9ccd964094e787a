#pragma once

#include "archive/Command.h"
#include "archive/EventLines.h"
#include "archive/Output.h"

namespace tool {

/// The register in lines; @p users in the order in which they lie there.
QByteArray userLines(const QList<User> &users, const LineForm &form, const Texts &texts);

/// Writes the users of the register, with notes and truncated codes.
class UsersCommand : public Command
{
public:
    /// All must outlive this object.
    UsersCommand(const Site &site, const LineForm &form, Output &output) : m_site(site), m_form(form), m_pending(output)
    {
    }

    Result<bool> step(const QDeadlineTimer &until) override;

private:
    Result<QList<User>> read();

    const Site m_site;
    const LineForm m_form;
    Pending m_pending;
    bool m_isRead = false;
};

} // namespace tool
