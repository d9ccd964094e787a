#pragma once

#include "archive/Command.h"
#include "archive/EventLines.h"
#include "archive/EventSheet.h"
#include "archive/Output.h"
#include "archive/ToolOptions.h"
#include "events/EventSearch.h"

namespace tool {

/// The one user of these names, whatever their case and accents; "" counts as any.
/// @return NotFound for nobody, TooLarge for users of several codes, with these as its subject
Result<EventChoice::Person> personOf(const UserDirectory &users, const QString &surname, const QString &name);

/// Writes the events that meet a query.
class SearchCommand : public Command
{
public:
    /// All must outlive this object. @param output  of no sheet
    SearchCommand(const Site &site, const ToolOptions &options, const LineForm &form, Output *output, Disk &disk);

    Result<bool> step(const QDeadlineTimer &until) override;
    bool hasFaults() const override { return m_hasFaults; }
    Message words(const Fault &fault) const override;
    QString state() const override;

private:
    Result<void> begin();
    Result<void> refuse(Message why);
    Result<void> findPerson(TypedQuery &query);
    void tellDays();
    Result<bool> write(const QDeadlineTimer &until);
    qint64 count() const { return m_sheet ? m_sheet->count() : m_lines.count(); }

    enum class Stage { Users, Search, Write };

    const Site m_site;
    const ToolOptions m_options;
    UserDirectory m_users;
    EventLines m_lines;
    std::optional<EventSheet> m_sheet; ///< in place of the lines
    std::optional<Pending> m_pending;  ///< none for a sheet
    EventSearch m_search;
    Stage m_stage = Stage::Users;
    std::optional<Message> m_refusal; ///< why the query cannot be searched for
    bool m_hasFaults = false;
};

} // namespace tool
