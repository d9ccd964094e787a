#include "prefs/frmIstruzioni.h"

#include "startup/PlainText.h"
#include "texts/LanguageName.h"
#include "texts/OwnText.h"
#include "widgets/Messages.h"
#include "widgets/Twips.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPdfDocument>
#include <QPdfPageNavigator>
#include <QPdfSelection>
#include <QPdfView>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QToolButton>

namespace {

constexpr double zoomStep = 1.25;
constexpr double smallestZoom = 0.25;
// The view keeps up to twenty pages as pictures: larger ones would take memory by the gigabyte.
constexpr double largestZoom = 3;
constexpr double pointsPerInch = 72;
/// A manual that speaks several languages names the one of a section below its title.
constexpr int linesOfTitle = 3;

} // namespace

frmIstruzioni::frmIstruzioni(Text caption, const QString &file, const Texts &texts, Messages &messages, QWidget *parent)
    : ChildWindow(QStringLiteral("frmIstruzioni"), parent),
      m_caption(caption),
      m_file(file),
      m_texts(texts),
      m_messages(messages),
      m_document(new QPdfDocument(this)),
      ReadPdf(new QPdfView(this)),
      lblPagina(new QLabel),
      cmdZoomMeno(new QToolButton),
      cmdZoomLarghezza(new QToolButton),
      cmdZoomPiu(new QToolButton)
{
    auto *tools = new QHBoxLayout;
    tools->addWidget(lblPagina);
    tools->addStretch();
    tools->addWidget(cmdZoomMeno);
    tools->addWidget(cmdZoomLarghezza);
    tools->addWidget(cmdZoomPiu);
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(pixels(10), pixels(10), pixels(10), pixels(10));
    rows->setSpacing(pixels(10));
    rows->addWidget(ReadPdf, 1);
    rows->addLayout(tools);
    ReadPdf->setDocument(m_document);
    ReadPdf->setPageMode(QPdfView::PageMode::MultiPage);
    ReadPdf->setZoomMode(QPdfView::ZoomMode::FitToWidth);
    ReadPdf->setFocusPolicy(Qt::StrongFocus);

    ReadPdf->setObjectName(QStringLiteral("ReadPdf"));
    lblPagina->setObjectName(QStringLiteral("lblPagina"));
    cmdZoomMeno->setObjectName(QStringLiteral("cmdZoomMeno"));
    cmdZoomLarghezza->setObjectName(QStringLiteral("cmdZoomLarghezza"));
    cmdZoomPiu->setObjectName(QStringLiteral("cmdZoomPiu"));

    connect(ReadPdf->pageNavigator(), &QPdfPageNavigator::currentPageChanged, this, &frmIstruzioni::showPage);
    connect(cmdZoomMeno, &QToolButton::clicked, this, &frmIstruzioni::cmdZoomMeno_Click);
    connect(cmdZoomLarghezza, &QToolButton::clicked, this, &frmIstruzioni::cmdZoomLarghezza_Click);
    connect(cmdZoomPiu, &QToolButton::clicked, this, &frmIstruzioni::cmdZoomPiu_Click);
    const auto onKey = [this](const QKeySequence &key, void (frmIstruzioni::*slot)()) {
        auto *shortcut = new QShortcut(key, this);
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, slot);
    };
    onKey(Qt::CTRL | Qt::Key_Minus, &frmIstruzioni::cmdZoomMeno_Click);
    onKey(Qt::CTRL | Qt::Key_0, &frmIstruzioni::cmdZoomLarghezza_Click);
    onKey(Qt::CTRL | Qt::Key_Plus, &frmIstruzioni::cmdZoomPiu_Click);
    // Where "+" stands on the shifted "=" key.
    onKey(Qt::CTRL | Qt::Key_Equal, &frmIstruzioni::cmdZoomPiu_Click);
    onKey(Qt::Key_Home, &frmIstruzioni::toBegin);
    onKey(Qt::Key_End, &frmIstruzioni::toEnd);
    onKey(Qt::Key_Escape, &frmIstruzioni::unload);
    setKeepsPlace();

    frmIstruzioni::setCaptions();
    ReadPdf->setFocus();
}

frmIstruzioni::~frmIstruzioni()
{
    // The view draws pages in a thread of its own, and tells of another page when its document goes: it goes first.
    delete ReadPdf;
}

bool frmIstruzioni::load()
{
    if (m_document->load(m_file) == QPdfDocument::Error::None && m_document->pageCount() > 0) {
        // Where a page lies is known when the view has its size.
        QMetaObject::invokeMethod(
            this, [this] { ReadPdf->pageNavigator()->jump(firstPage(), {}); }, Qt::QueuedConnection);
        showPage();
        return true;
    }
    m_messages.show(this, Icon::Critical, m_texts[Text::FileNonTrovato], [this] { unload(); });
    return false;
}

/// Page on which the section of the language in force begins; the first one when there is none.
int frmIstruzioni::firstPage() const
{
    const QString language = languageName(m_texts.language());
    for (int page = 0; page < m_document->pageCount(); ++page) {
        const QStringList lines = m_document->getAllText(page).text().split(QLatin1Char('\n'));
        for (const QString &line : lines.first(qMin<qsizetype>(linesOfTitle, lines.size()))) {
            if (line.trimmed() == language)
                return page;
        }
    }
    return 0;
}

QSize frmIstruzioni::sizeHint() const
{
    return {pixels(13000), pixels(12000)};
}

void frmIstruzioni::setCaptions()
{
    setWindowTitle(TogliAnd(m_texts[m_caption]));
    ReadPdf->setAccessibleName(windowTitle());
    const auto label = [this](QToolButton *button, QChar sign, OwnText name) {
        button->setText(sign);
        button->setAccessibleName(m_texts[name]);
        button->setToolTip(m_texts[name]);
    };
    label(cmdZoomMeno, QChar(0x2212), OwnText::ZoomOut);
    label(cmdZoomLarghezza, QChar(0x2194), OwnText::ZoomToWidth);
    label(cmdZoomPiu, QLatin1Char('+'), OwnText::ZoomIn);
    if (m_document->pageCount() > 0)
        showPage();
}

void frmIstruzioni::cmdZoomMeno_Click()
{
    zoom(1 / zoomStep);
}

void frmIstruzioni::cmdZoomLarghezza_Click()
{
    ReadPdf->setZoomMode(QPdfView::ZoomMode::FitToWidth);
}

void frmIstruzioni::cmdZoomPiu_Click()
{
    zoom(zoomStep);
}

void frmIstruzioni::toBegin()
{
    ReadPdf->verticalScrollBar()->triggerAction(QScrollBar::SliderToMinimum);
}

void frmIstruzioni::toEnd()
{
    ReadPdf->verticalScrollBar()->triggerAction(QScrollBar::SliderToMaximum);
}

void frmIstruzioni::showPage()
{
    lblPagina->setText(QStringLiteral("%1 %2 / %3")
                           .arg(m_texts[Text::Pagina])
                           .arg(ReadPdf->pageNavigator()->currentPage() + 1)
                           .arg(m_document->pageCount()));
}

void frmIstruzioni::zoom(double step)
{
    // The place in the manual stays in view.
    QScrollBar *bar = ReadPdf->verticalScrollBar();
    const double place = bar->maximum() > 0 ? static_cast<double>(bar->value()) / bar->maximum() : 0;
    ReadPdf->setZoomFactor(qBound(smallestZoom, shownZoom() * step, largestZoom));
    ReadPdf->setZoomMode(QPdfView::ZoomMode::Custom);
    bar->setValue(qRound(place * bar->maximum()));
}

double frmIstruzioni::shownZoom() const
{
    if (ReadPdf->zoomMode() == QPdfView::ZoomMode::Custom)
        return ReadPdf->zoomFactor();
    const QMargins margins = ReadPdf->documentMargins();
    const int width = ReadPdf->viewport()->width() - margins.left() - margins.right();
    const double page = m_document->pagePointSize(ReadPdf->pageNavigator()->currentPage()).width();
    const double resolution = QGuiApplication::primaryScreen()->logicalDotsPerInch() / pointsPerInch;
    return page > 0 ? width / (page * resolution) : 1;
}
