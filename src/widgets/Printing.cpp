#include "widgets/Printing.h"

#include "startup/CurrentPrinter.h"
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
constexpr QMarginsF marginsOfNoPrinter(10, 10, 10, 10); ///< in millimetres

/// Paper and printable area of a printer.
QPageLayout pageLayoutOf(const QString &printer)
{
    QPrinter device(QPrinter::HighResolution);
    device.setPrinterName(printer);
    if (device.outputFormat() == QPrinter::NativeFormat && device.printerName() == printer &&
        device.pageLayout().isValid())
        return device.pageLayout();
    return QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, marginsOfNoPrinter, QPageLayout::Millimeter);
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
    QString title;
    std::function<void()> ended;
    QTemporaryDir folder; ///< for its owner's eyes only
    QPrinter device{QPrinter::HighResolution};
    QPainter painter;
    std::unique_ptr<PainterPage> page;

    QString path() const { return folder.filePath(QStringLiteral("document.pdf")); }
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

bool Printing::isReady(Icon icon)
{
    if (isRunning())
        return false;
    const Result<QString> name = m_printer.name();
    if (name)
        m_printerName = name.value();
    else if (name.fault().code == FaultCode::NotFound)
        m_messages.show(m_window, Icon::Exclamation,
                        m_texts.sentence({OwnText::PrinterGone, {name.fault().subject}, {}}));
    else
        m_messages.show(m_window, icon, m_texts[Text::NessunaStampanteInstallata]);
    return name.ok();
}

void Printing::print(std::unique_ptr<Report> report, const QString &title, std::function<void()> ended)
{
    tmrStampa_Timer();
    m_notice = new frmStampaInCorso(m_texts, m_window);
    tmrStampa->start();

    m_document = std::make_unique<Document>();
    m_document->report = std::move(report);
    m_document->title = title;
    m_document->ended = std::move(ended);
    m_turn.start(0);
}

void Printing::stop()
{
    m_turn.stop();
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
        m_messages.show(over, Icon::Exclamation, m_texts.sentence({OwnText::PrintNotMade, {m_printerName}, {}}));
}

void Printing::turn()
{
    Document &document = *m_document;
    const Message notMade = {OwnText::PrintNotMade, {m_printerName}, Fault{FaultCode::InputOutput, document.path()}};
    if (!document.page) {
        document.device.setOutputFormat(QPrinter::PdfFormat);
        document.device.setOutputFileName(document.path());
        document.device.setDocName(document.title);
        document.device.setPageLayout(pageLayoutOf(m_printerName));
        if (!document.folder.isValid() || !document.painter.begin(&document.device))
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
        return fail({OwnText::PrintNotMade, {m_printerName}, document.report->fault().value_or(*notMade.fault)});
    case Report::Progress::Finished:
        if (!document.painter.end() || !isComplete(document.path()))
            return fail(notMade);
        return finish();
    }
}

void Printing::finish()
{
    m_turn.stop();
    // The job is the printer's from here on, whatever happens to the window.
    const std::unique_ptr<Document> document = std::move(m_document);
    const Result<void> sent = m_printer.printers().send(m_printerName, document->path(), document->title);
    if (!sent)
        m_messages.show(m_window, Icon::Exclamation,
                        m_texts.sentence({OwnText::PrintNotMade, {m_printerName}, sent.fault()}));
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
