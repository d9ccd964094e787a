#include "widgets/Printing.h"

#include "widgets/ChildWindow.h"
#include "widgets/Messages.h"
#include "widgets/PainterPage.h"
#include "widgets/frmStampaInCorso.h"

#include <QFile>
#include <QPainter>
#include <QPrinter>
#include <QTemporaryDir>

namespace {

constexpr int noticeMilliseconds = 3000;
constexpr int turnMilliseconds = 20;

QPageLayout pageLayoutOf(const Paper &paper)
{
    return {QPageSize(paper.size, QPageSize::Millimeter), QPageLayout::Portrait, paper.margins,
            QPageLayout::Millimeter};
}

/// The painter does not tell that the disk was full.
bool isComplete(const QString &path)
{
    constexpr qint64 tail = 32;
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.seek(qMax<qint64>(0, file.size() - tail)) &&
           file.readAll().contains("%%EOF");
}

} // namespace

struct Printing::Document {
    std::unique_ptr<Report> report;
    PrintDocument made;
    std::function<void()> ended;
    QPrinter device{QPrinter::HighResolution};
    QPainter painter;
    std::unique_ptr<PainterPage> page;
};

Printing::Printing(ChildWindow *window, const CurrentPrinter &printer, const Texts &texts, Messages &messages)
    : QObject(window),
      m_window(window),
      m_printer(printer),
      m_texts(texts),
      m_messages(messages),
      tmrStampa(new QTimer(this))
{
    tmrStampa->setObjectName(QStringLiteral("tmrStampa"));
    tmrStampa->setSingleShot(true);
    tmrStampa->setInterval(noticeMilliseconds);
    connect(tmrStampa, &QTimer::timeout, this, &Printing::tmrStampa_Timer);
    connect(&m_turn, &QTimer::timeout, this, &Printing::turn);
    connect(window, &ChildWindow::unloaded, this, &Printing::windowGoes);
}

Printing::~Printing()
{
    stop();
}

void Printing::findPrinter(std::function<void()> found, std::function<void()> notFound, Icon icon)
{
    if (isRunning())
        return;
    const auto refuse = [this, notFound = std::move(notFound), icon](const Fault &fault) {
        tellNoPrinter(fault, icon);
        if (notFound)
            notFound();
    };
    if (!m_printer.isChosen())
        return refuse(Fault{FaultCode::NotOpen, {}});
    m_found = {m_printer.number(), {}};
    m_search = std::make_unique<CurrentPrinter::Search>(
        m_printer, [this, refuse, found = std::move(found)](const Result<CurrentPrinter::Found> &answer) {
            // The search is over for whoever asks, but lives until its answer has been heard.
            const std::unique_ptr<CurrentPrinter::Search> search = std::move(m_search);
            if (!answer)
                return refuse(answer.fault());
            m_found = answer.value();
            found();
        });
}

void Printing::tellNoPrinter(const Fault &fault, Icon icon)
{
    switch (fault.code) {
    case FaultCode::NotOpen:
        return m_messages.show(m_window, icon, m_texts[Text::NessunaStampanteInstallata]);
    case FaultCode::NotFound:
        return m_messages.show(m_window, Icon::Exclamation,
                               m_texts.sentence({OwnText::PrinterGone, {fault.subject}, {}}));
    default:
        return m_messages.show(m_window, Icon::Exclamation, m_texts[OwnText::PrintSystemSilent]);
    }
}

void Printing::print(std::unique_ptr<Report> report, const QString &title, std::function<void()> ended)
{
    tmrStampa_Timer();
    m_notice = new frmStampaInCorso(m_texts, m_window);
    tmrStampa->start();

    m_document = std::make_unique<Document>();
    m_document->report = std::move(report);
    m_document->made = {std::make_unique<QTemporaryDir>(), m_found.name, title};
    m_document->ended = std::move(ended);
    m_turn.start(0);
}

void Printing::stop()
{
    m_turn.stop();
    m_search.reset();
    m_document.reset();
    tmrStampa_Timer();
}

void Printing::windowGoes()
{
    const bool isLost = isRunning();
    stop();
    // Over what the window stood in, where there is anything.
    QWidget *over = m_window->window() != m_window ? m_window->window() : nullptr;
    if (isLost && over && over->isVisible())
        m_messages.show(over, Icon::Exclamation, m_texts.sentence({OwnText::PrintNotMade, {m_found.name}, {}}));
}

void Printing::turn()
{
    Document &document = *m_document;
    const Message notMade = {
        OwnText::PrintNotMade, {m_found.name}, Fault{FaultCode::InputOutput, document.made.path()}};
    if (!document.page) {
        document.device.setOutputFormat(QPrinter::PdfFormat);
        document.device.setOutputFileName(document.made.path());
        document.device.setDocName(document.made.title);
        document.device.setPageLayout(pageLayoutOf(m_found.paper));
        if (!document.made.folder->isValid() || !document.painter.begin(&document.device))
            return fail(notMade);
        document.page = std::make_unique<PainterPage>(document.painter, document.device);
        if (!document.page->isFixedPitch())
            return fail({OwnText::PrintFontMissing, {PainterPage::faces().first()}, {}});
        return;
    }
    switch (document.report->step(*document.page, turnMilliseconds)) {
    case Report::Progress::Running:
        break;
    case Report::Progress::Failed:
        return fail({OwnText::PrintNotMade, {m_found.name}, document.report->fault().value_or(*notMade.fault)});
    case Report::Progress::Finished:
        if (!document.painter.end() || !isComplete(document.made.path()))
            return fail(notMade);
        return finish();
    }
}

void Printing::finish()
{
    m_turn.stop();
    const std::unique_ptr<Document> document = std::move(m_document);
    m_printer.send(std::move(document->made));
    if (document->ended)
        document->ended();
}

void Printing::fail(const Message &message)
{
    m_turn.stop();
    const std::unique_ptr<Document> document = std::move(m_document);
    m_messages.show(m_window, Icon::Exclamation, m_texts.sentence(message));
    if (document->ended)
        document->ended();
}

void Printing::tmrStampa_Timer()
{
    tmrStampa->stop();
    delete m_notice;
}
