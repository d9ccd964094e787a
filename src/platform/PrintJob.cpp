#include "platform/PrintJob.h"

PrintJob::PrintJob(std::shared_ptr<const PrintSystem> system, PrintDocument document,
                   std::chrono::milliseconds patience, QObject *parent)
    : QObject(parent),
      m_document(std::move(document)),
      m_errand([system = std::move(system), printer = m_document.printer, path = m_document.path(),
                title = m_document.title] { return system->send(printer, path, title); },
               [this](const Result<void> &answer) {
                   m_patience.stop();
                   m_document.folder.reset();
                   Q_EMIT answered(answer);
               })
{
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, &PrintJob::waits);
    m_patience.start(patience);
}

std::optional<Result<void>> PrintJob::wait(std::chrono::milliseconds most)
{
    m_patience.stop();
    return m_errand.wait(most);
}
