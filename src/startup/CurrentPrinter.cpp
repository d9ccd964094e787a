#include "startup/CurrentPrinter.h"

#include "texts/OwnText.h"

#include <QDeadlineTimer>

namespace {

constexpr int noPrinter = -1; ///< in the settings

/// Where the chosen printer stands among those that are installed: the default one in place of one that is gone.
int currentIndex(int chosen, const PrinterList &installed)
{
    return chosen >= 0 && chosen < installed.names.size() ? chosen : installed.defaultIndex();
}

} // namespace

CurrentPrinter::CurrentPrinter(Settings &settings, const Printers &printers, Notices &notices)
    : m_settings(settings), m_printers(printers), m_notices(notices)
{
}

bool CurrentPrinter::isChosen() const
{
    return m_settings.IndStampante != noPrinter;
}

CurrentPrinter::Search::Search(const CurrentPrinter &printer, std::function<void(const Result<Found> &)> then)
    : m_printers(printer.m_printers),
      m_index(printer.m_settings.IndStampante),
      m_then(std::move(then)),
      m_list(m_printers.list([this](const Result<PrinterList> &list) { listed(list); }))
{
}

void CurrentPrinter::Search::listed(const Result<PrinterList> &list)
{
    if (!list)
        return m_then(list.fault());
    const QStringList &names = list.value().names;
    if (names.isEmpty())
        return m_then(Fault{FaultCode::NotOpen, {}});
    const QString name = names[currentIndex(m_index, list.value())];
    m_paper = m_printers.paper(name, [this, name](const Result<Paper> &paper) {
        m_then(Found{name, paper ? paper.value() : Paper{}});
    });
}

int CurrentPrinter::shownIndex(const PrinterList &installed) const
{
    const int index = m_settings.IndStampante;
    return index < noPrinter ? -1 : currentIndex(index, installed);
}

Result<void> CurrentPrinter::choose(int index)
{
    m_settings.IndStampante = index;
    return m_settings.save(QStringLiteral("PRN"), index);
}

void CurrentPrinter::send(PrintDocument document) const
{
    auto *job = new PrintJob(m_printers.system(), std::move(document), PrintJob::Patience, m_jobs.get());
    QObject::connect(job, &PrintJob::answered, job, [this, job](const Result<void> &answer) {
        tell(job->printer(), answer);
        job->deleteLater();
    });
    QObject::connect(job, &PrintJob::waits, job, [this, job] {
        m_notices.post(Icon::Information, {OwnText::PrintNotConfirmed, {job->printer()}, {}});
    });
}

void CurrentPrinter::tell(const QString &printer, const Result<void> &answer) const
{
    if (!answer)
        m_notices.post(Icon::Exclamation, {OwnText::PrintNotMade, {printer}, answer.fault()});
}

void CurrentPrinter::end(std::chrono::milliseconds patience)
{
    const QDeadlineTimer deadline(patience);
    const QList<PrintJob *> jobs = m_jobs->findChildren<PrintJob *>();
    for (PrintJob *job : jobs) {
        if (!job->isUnderWay())
            continue;
        if (const auto answer = job->wait(std::chrono::milliseconds(deadline.remainingTime())))
            tell(job->printer(), *answer);
        else
            m_notices.post(Icon::Exclamation, {OwnText::PrintNotConfirmed, {job->printer()}, {}});
        delete job;
    }
}
