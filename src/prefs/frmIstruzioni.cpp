#include "prefs/frmIstruzioni.h"

#include "startup/PlainText.h"
#include "texts/OwnText.h"
#include "widgets/Messages.h"
#include "widgets/Twips.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPdfBookmarkModel>
#include <QPdfDocument>
#include <QPdfPageNavigator>
#include <QPdfView>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QStyledItemDelegate>
#include <QToolButton>
#include <QTreeView>

namespace {

constexpr double zoomStep = 1.25;
constexpr double smallestZoom = 0.25;
// The view keeps up to twenty pages as pictures: larger ones would take memory by the gigabyte.
constexpr double largestZoom = 3;
constexpr double pointsPerInch = 72;
// Twips.
constexpr int contentsWidth = 3600;
constexpr int betweenHeadings = 60;
constexpr int leastPageWidth = 9000; ///< in which a page can be read

/// Pixels in which a page of natural size shows a point.
double naturalPixelsPerPoint()
{
    return QGuiApplication::primaryScreen()->logicalDotsPerInch() / pointsPerInch;
}

/// A heading goes on in another line where the tree is narrower than it; the library leaves it one.
class Headings : public QStyledItemDelegate
{
public:
    explicit Headings(QTreeView *tree) : QStyledItemDelegate(tree), m_tree(tree) {}

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyleOptionViewItem broken = option;
        int width = m_tree->columnWidth(0);
        for (QModelIndex above = index.parent(); above.isValid(); above = above.parent())
            width -= m_tree->indentation();
        broken.rect = QRect(0, 0, width, option.fontMetrics.height());
        return QStyledItemDelegate::sizeHint(broken, index) + QSize(0, pixels(betweenHeadings));
    }

private:
    QTreeView *m_tree;
};

} // namespace

frmIstruzioni::frmIstruzioni(Text caption, const QString &file, const Texts &texts, Messages &messages, QWidget *parent)
    : ChildWindow(QStringLiteral("frmIstruzioni"), parent),
      m_caption(caption),
      m_file(file),
      m_texts(texts),
      m_messages(messages),
      m_document(new QPdfDocument(this)),
      m_chapters(new QPdfBookmarkModel(this)),
      treContenuto(new QTreeView),
      ReadPdf(new QPdfView),
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
    auto *parts = new QSplitter;
    parts->setChildrenCollapsible(false);
    parts->addWidget(treContenuto);
    parts->addWidget(ReadPdf);
    parts->setStretchFactor(1, 1);
    parts->setSizes({pixels(contentsWidth), pixels(leastPageWidth)});
    rows->addWidget(parts, 1);
    rows->addLayout(tools);
    ReadPdf->setDocument(m_document);
    ReadPdf->setPageMode(QPdfView::PageMode::MultiPage);
    ReadPdf->setZoomMode(QPdfView::ZoomMode::FitToWidth);
    ReadPdf->setFocusPolicy(Qt::StrongFocus);
    treContenuto->setHeaderHidden(true);
    treContenuto->setRootIsDecorated(false);
    treContenuto->setWordWrap(true);
    treContenuto->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    treContenuto->setModel(m_chapters);
    treContenuto->setItemDelegate(new Headings(treContenuto));
    treContenuto->hide();

    treContenuto->setObjectName(QStringLiteral("treContenuto"));
    ReadPdf->setObjectName(QStringLiteral("ReadPdf"));
    lblPagina->setObjectName(QStringLiteral("lblPagina"));
    cmdZoomMeno->setObjectName(QStringLiteral("cmdZoomMeno"));
    cmdZoomLarghezza->setObjectName(QStringLiteral("cmdZoomLarghezza"));
    cmdZoomPiu->setObjectName(QStringLiteral("cmdZoomPiu"));

    connect(treContenuto->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &frmIstruzioni::treContenuto_Change);
    // Its lines are as high as their headings are in that width.
    connect(treContenuto->header(), &QHeaderView::sectionResized, treContenuto, &QTreeView::doItemsLayout);
    // One that is current already is chosen again.
    connect(treContenuto, &QTreeView::clicked, this, &frmIstruzioni::treContenuto_Change);
    connect(treContenuto, &QTreeView::activated, this, &frmIstruzioni::treContenuto_Change);
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
        m_chapters->setDocument(m_document);
        treContenuto->expandAll();
        showContents();
        showPage();
        return true;
    }
    m_messages.show(this, Icon::Critical, m_texts[Text::FileNonTrovato], [this] { unload(); });
    return false;
}

void frmIstruzioni::resizeEvent(QResizeEvent *event)
{
    ChildWindow::resizeEvent(event);
    showContents();
}

/// The contents give way where the page would become too narrow to be read.
void frmIstruzioni::showContents()
{
    const bool hasRoom = roomForContent() >= pixels(contentsWidth + leastPageWidth);
    treContenuto->setVisible(hasRoom && m_chapters->rowCount() > 0);
}

void frmIstruzioni::treContenuto_Change(const QModelIndex &chapter)
{
    if (!chapter.isValid())
        return;
    // The view goes to the beginning of a page, wherever on it a chapter begins.
    const int page = chapter.data(int(QPdfBookmarkModel::Role::Page)).toInt();
    const double y = chapter.data(int(QPdfBookmarkModel::Role::Location)).toPointF().y();
    const double scale = shownZoom() * naturalPixelsPerPoint();
    double top = 0;
    for (int before = 0; before < page; ++before)
        top += qRound(m_document->pagePointSize(before).height() * scale) + ReadPdf->pageSpacing();
    ReadPdf->verticalScrollBar()->setValue(qRound(top + y * scale));
}

QSize frmIstruzioni::sizeHint() const
{
    return {pixels(13000 + contentsWidth), pixels(12000)};
}

void frmIstruzioni::setCaptions()
{
    setWindowTitle(TogliAnd(m_texts[m_caption]));
    ReadPdf->setAccessibleName(windowTitle());
    treContenuto->setAccessibleName(m_texts[OwnText::ManualContents]);
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
    return page > 0 ? width / (page * naturalPixelsPerPoint()) : 1;
}
