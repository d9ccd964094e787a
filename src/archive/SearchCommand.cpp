#include "archive/SearchCommand.h"

#include "texts/NameKey.h"
#include "texts/OwnText.h"

namespace tool {

Result<EventChoice::Person> personOf(const UserDirectory &users, const QString &surname, const QString &name)
{
    QStringList codes;
    for (const User &user : users.users()) {
        const bool isMeant = (surname.isEmpty() || nameKey(user.Cognome) == nameKey(surname)) &&
                             (name.isEmpty() || nameKey(user.Nome) == nameKey(name));
        if (isMeant && !codes.contains(user.Codice))
            codes.append(user.Codice);
    }
    if (codes.isEmpty())
        return Fault{FaultCode::NotFound, surname + name};
    if (codes.size() > 1)
        return Fault{FaultCode::TooLarge, codes.join(QStringLiteral(", "))};
    return EventChoice::Person{codes.constFirst()};
}

SearchCommand::SearchCommand(const Site &site, const ToolOptions &options, const LineForm &form, Output *output,
                             Disk &disk)
    : m_site(site),
      m_options(options),
      m_users(site.archives),
      m_lines(form, site.texts, m_users),
      m_sheet(form.format == Format::Xls
                  ? std::optional<EventSheet>(std::in_place, disk, options.output, site.texts, m_users)
                  : std::nullopt),
      m_search(site.archives, m_users, m_sheet ? static_cast<EventSink &>(*m_sheet) : m_lines)
{
    if (output)
        m_pending.emplace(*output);
}

QString SearchCommand::state() const
{
    return m_stage == Stage::Search ? DataBarre(m_search.day()) + QStringLiteral("  ") + QString::number(count())
                                    : QString();
}

Result<bool> SearchCommand::step(const QDeadlineTimer &until)
{
    if (m_pending) {
        Result<bool> written = m_pending->write(until);
        if (!written || !written.value())
            return written;
    }
    if (m_stage == Stage::Write)
        return write(until);
    if (m_stage == Stage::Users) {
        const Result<void> begun = begin();
        return begun ? Result<bool>(false) : Result<bool>(begun.fault());
    }
    Result<bool> searched = m_search.step(until);
    if (!searched)
        return searched;
    if (m_pending)
        m_pending->add(m_lines.take());
    if (searched.value()) {
        tellDays();
        m_stage = Stage::Write;
    }
    return false;
}

Result<void> SearchCommand::begin()
{
    m_stage = Stage::Search;
    if (m_sheet) {
        if (Result<void> created = m_sheet->create(); !created)
            return created;
    }
    if (Result<void> read = m_users.open(); !read)
        return read;
    TypedQuery query = m_options.query;
    if (Result<void> found = findPerson(query); !found)
        return found;
    if (const QueryFault fault = checkQuery(query, m_users); fault != QueryFault::None)
        return refuse({queryText(fault), {}, {}});
    return m_search.start(eventQuery(query));
}

Result<void> SearchCommand::findPerson(TypedQuery &query)
{
    if (m_options.surname.isEmpty() && m_options.name.isEmpty())
        return {};
    const Result<EventChoice::Person> person = personOf(m_users, m_options.surname, m_options.name);
    if (!person && person.fault().code == FaultCode::TooLarge)
        return refuse({OwnText::ToolSeveralPeople, {person.fault().subject}, {}});
    query.person = person ? person.value() : EventChoice::Person();
    return {};
}

Result<void> SearchCommand::refuse(Message why)
{
    m_refusal = std::move(why);
    return Fault{FaultCode::NotFound, {}};
}

Message SearchCommand::words(const Fault &fault) const
{
    return m_refusal ? *m_refusal : Command::words(fault);
}

void SearchCommand::tellDays()
{
    m_hasFaults = !m_search.isComplete();
    if (!m_search.unreadDays().isEmpty())
        m_site.tell({OwnText::DaysNotRead, {listOfDays(m_search.unreadDays())}, {}});
    if (!m_search.incompleteDays().isEmpty())
        m_site.tell({OwnText::DaysIncomplete, {listOfDays(m_search.incompleteDays())}, {}});
}

Result<bool> SearchCommand::write(const QDeadlineTimer &until)
{
    return m_sheet ? m_sheet->write(until) : m_pending->end();
}

} // namespace tool
