#include "archive/PruneCommand.h"

#include "archives/DayFiles.h"
#include "archives/Tables.h"
#include "journal/JournalFile.h"
#include "platform/ArchiveUse.h"
#include "texts/DateTimeText.h"
#include "texts/OwnText.h"

#include <algorithm>

namespace tool {

namespace {

constexpr int waitMilliseconds = 100;

} // namespace

PruneCommand::PruneCommand(const Site &site, QDate before, Consent consent, Output &output)
    : m_site(site), m_before(before), m_consent(consent), m_pending(output)
{
}

int PruneCommand::pause() const
{
    return m_stage == Stage::Wait ? waitMilliseconds : 0;
}

Message PruneCommand::words(const Fault &fault) const
{
    return m_refusal ? *m_refusal : Command::words(fault);
}

Result<bool> PruneCommand::refuse(Message why)
{
    m_refusal = std::move(why);
    return Fault{FaultCode::AccessDenied, {}};
}

/// The oldest first.
Result<void> PruneCommand::list()
{
    const Result<QHash<QDate, DayFiles>> listed = filesOfDays(m_site.archives.folder());
    if (!listed)
        return listed.fault();
    const QHash<QDate, DayFiles> &files = listed.value();
    QList<QDate> days = files.keys();
    std::sort(days.begin(), days.end());
    for (const QDate day : std::as_const(days)) {
        if (day >= m_before)
            break;
        const DayFiles &ofDay = files[day];
        m_names += ofDay.setAside;
        if (!ofDay.archive.isEmpty())
            m_names.append(ofDay.archive);
    }
    const QList<int> years = JournalFile::years(m_site.archives.folder());
    for (const int year : years) {
        if (year < m_before.year())
            m_names.append(ArchiveName::journal(year));
    }
    return {};
}

Result<bool> PruneCommand::step(const QDeadlineTimer &until)
{
    Result<bool> written = m_pending.write(until);
    if (!written || !written.value())
        return written;
    switch (m_stage) {
    case Stage::List:
        return begin();
    case Stage::Ask:
        return ask();
    case Stage::Wait:
        return false;
    case Stage::Remove:
        return remove();
    case Stage::End:
        break;
    }
    return m_pending.end();
}

Result<bool> PruneCommand::begin()
{
    const QDate latest = m_site.clock.date().addDays(-YoungestDays);
    if (!m_before.isValid() || m_before > latest)
        return refuse({OwnText::PruneTooYoung, {DataBarre(latest)}, {}});
    if (const Result<void> listed = list(); !listed)
        return listed.fault();
    if (m_names.isEmpty()) {
        m_site.tell({OwnText::PruneNothing, {DataBarre(m_before)}, {}});
        m_stage = Stage::End;
        return false;
    }
    for (const QString &name : std::as_const(m_names))
        m_pending.add(name.toUtf8() + '\n');
    m_stage = Stage::Ask;
    return false;
}

Result<bool> PruneCommand::ask()
{
    if (m_consent == Consent::Impossible)
        return refuse({OwnText::PruneNeedsYes, {}, {}});
    if (m_consent == Consent::ToBeAsked) {
        m_site.tell({OwnText::PruneAsk, {QString::number(m_names.size())}, {}});
        m_stage = Stage::Wait;
        m_input = std::make_unique<StandardInput>();
        QObject::connect(m_input.get(), &StandardInput::line, m_input.get(),
                         [this](const QByteArray &line) { answer(QString::fromUtf8(line)); });
        QObject::connect(m_input.get(), &StandardInput::ended, m_input.get(), [this] { answer({}); });
        return false;
    }
    // In front of the deletion: what is gone is never gone without a trace.
    const JournalRow row{0, momentOf(m_site.clock.now()), JournalKind::Pruned, m_before.toString(Qt::ISODate),
                         QString::number(m_names.size())};
    if (const Result<void> noted = JournalFile::append(m_site.archives, row); !noted)
        return refuse({OwnText::PruneNotNoted, {}, noted.fault()});
    m_stage = Stage::Remove;
    return false;
}

void PruneCommand::answer(const QString &text)
{
    if (m_stage != Stage::Wait)
        return;
    if (text.trimmed().compare(m_site.texts[OwnText::PruneYes], Qt::CaseInsensitive) == 0) {
        m_consent = Consent::Given;
        m_stage = Stage::Ask;
        return;
    }
    m_site.tell({OwnText::PruneNotDone, {}, {}});
    m_hasFaults = true;
    m_stage = Stage::End;
}

Result<bool> PruneCommand::remove()
{
    if (m_names.isEmpty()) {
        m_site.tell({OwnText::PruneDone, {QString::number(m_removed)}, {}});
        m_stage = Stage::End;
        return false;
    }
    const QString name = m_names.takeFirst();
    // An event that waited so long may be on its way into it.
    const Result<void> removed = isInUse(m_site.archives.folder().path(name))
                                     ? Result<void>(Fault{FaultCode::Locked, name})
                                     : m_site.archives.remove(name);
    if (removed) {
        ++m_removed;
        return false;
    }
    m_hasFaults = true;
    m_site.tell({OwnText::FileNotDeleted, {name}, removed.fault()});
    return false;
}

} // namespace tool
