#include "widgets/Printing.h"

#include "texts/OwnText.h"
#include "widgets/ChildWindow.h"
#include "widgets/Messages.h"
#include "widgets/PainterPage.h"
#include "widgets/frmStampaInCorso.h"

#include <QFile>
#include <QPainter>
#include <QPdfWriter>
#include <QTemporaryDir>

namespace {

constexpr int noticeMilliseconds = 3000;

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

/// A report that is painted to a file. Its fault is told by message().
class Printing::Document : public Task
{
public:
    Document(std::unique_ptr<Report> report, CurrentPrinter::Found printer, const QString &title)
        : m_report(std::move(report)),
          m_printer(std::move(printer)),
          m_made{std::make_unique<QTemporaryDir>(), m_printer.name, title}
    {
    }

    Result<bool> step(const QDeadlineTimer &until) override;
    Progress progress() const override { return {}; }

    const Message &message() const { return m_message; }
    PrintDocument takeMade() { return std::move(m_made); }

private:
    Result<void> begin();
    Fault notMade() const { return {FaultCode::InputOutput, m_made.path()}; }
    /// The fault that @p text is told with, or only known by where its words say it all.
    Fault fail(OwnText text, const QString &subject, const std::optional<Fault> &fault)
    {
        m_message = {text, {subject}, fault};
        return fault.value_or(notMade());
    }

    std::unique_ptr<Report> m_report;
    const CurrentPrinter::Found m_printer;
    PrintDocument m_made;
    Message m_message;
    // No printer of the library's: to make one asks the print system, and waits for it.
    QPdfWriter m_device{m_made.path()};
    QPainter m_painter;
    std::unique_ptr<PainterPage> m_page;
};

Result<void> Printing::Document::begin()
{
    m_device.setTitle(m_made.title);
    m_device.setPageLayout(pageLayoutOf(m_printer.paper));
    if (!m_made.folder->isValid() || !m_painter.begin(&m_device))
        return fail(OwnText::PrintNotMade, m_printer.name, notMade());
    m_page = std::make_unique<PainterPage>(m_painter, m_device);
    if (!m_page->isFixedPitch())
        return fail(OwnText::PrintFontMissing, PainterPage::faces().first(), {});
    return {};
}

Result<bool> Printing::Document::step(const QDeadlineTimer &until)
{
    if (!m_page) {
        const Result<void> begun = begin();
        return begun ? Result<bool>(false) : Result<bool>(begun.fault());
    }
    const Result<bool> printed = m_report->step(*m_page, until);
    if (!printed)
        return fail(OwnText::PrintNotMade, m_printer.name, printed.fault());
    if (!printed.value())
        return false;
    if (!m_painter.end() || !isComplete(m_made.path()))
        return fail(OwnText::PrintNotMade, m_printer.name, notMade());
    return true;
}

Printing::Printing(ChildWindow *window, const CurrentPrinter &printer, const Texts &texts, Messages &messages)
    : QObject(window),
      m_window(window),
      m_printer(printer),
      m_texts(texts),
      m_messages(messages),
      m_runner(window),
      tmrStampa(new QTimer(this))
{
    tmrStampa->setObjectName(QStringLiteral("tmrStampa"));
    tmrStampa->setSingleShot(true);
    tmrStampa->setInterval(noticeMilliseconds);
    connect(tmrStampa, &QTimer::timeout, this, &Printing::tmrStampa_Timer);
    connect(window, &ChildWindow::unloaded, this, &Printing::windowGoes);
    connect(&m_runner, &TaskRunner::dropped, this, &Printing::tellLost);
    connect(window, &ChildWindow::translated, this, [this] {
        if (m_notice)
            m_notice->setCaptions();
    });
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
    if (fault.code == FaultCode::NotOpen)
        m_messages.show(m_window, icon, m_texts[Text::NessunaStampanteInstallata]);
    else
        m_messages.show(m_window, Icon::Exclamation, m_texts[OwnText::PrintSystemSilent]);
}

void Printing::print(std::unique_ptr<Report> report, const QString &title, std::function<void(bool)> ended)
{
    tmrStampa_Timer();
    m_notice = new frmStampaInCorso(m_texts, m_window);
    tmrStampa->start();

    auto document = std::make_unique<Document>(std::move(report), m_found, title);
    Document &made = *document;
    m_runner.run(std::move(document), {}, [this, &made, ended = std::move(ended)](const Result<void> &painted) {
        if (painted)
            m_printer.send(made.takeMade());
        else
            m_messages.show(m_window, Icon::Exclamation, m_texts.sentence(made.message()));
        if (ended)
            ended(painted.ok());
    });
}

void Printing::stop()
{
    m_runner.stop();
    m_search.reset();
    tmrStampa_Timer();
}

void Printing::windowGoes()
{
    const bool isLost = m_search != nullptr;
    stop();
    if (isLost)
        tellLost();
}

void Printing::tellLost()
{
    // Over what the window stood in, where there is anything.
    QWidget *over = m_window->window() != m_window ? m_window->window() : nullptr;
    if (over && over->isVisible())
        m_messages.show(over, Icon::Exclamation, m_texts.sentence({OwnText::PrintNotMade, {m_found.name}, {}}));
}

void Printing::tmrStampa_Timer()
{
    tmrStampa->stop();
    delete m_notice;
}
