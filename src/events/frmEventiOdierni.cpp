#include "events/frmEventiOdierni.h"

#include "archives/Tables.h"
#include "events/EventGrid.h"
#include "events/EventReport.h"
#include "texts/OwnText.h"
#include "texts/Texts.h"
#include "widgets/Forms.h"
#include "widgets/Grid.h"
#include "widgets/Messages.h"
#include "widgets/Twips.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>

namespace {

constexpr int firstLookMilliseconds = 500;
constexpr int waitMilliseconds = 50;
constexpr int secondLookMilliseconds = 2000;
constexpr int nextLookMilliseconds = 500;
constexpr int looksBeforeTelling = 4;

} // namespace

frmEventiOdierni::frmEventiOdierni(const Texts &texts, Messages &messages, ArchiveStore &archives, const Clock &clock,
                                   const CurrentPrinter &printer, QWidget *parent)
    : ChildWindow(QStringLiteral("frmEventiOdierni"), parent),
      m_texts(texts),
      m_messages(messages),
      m_view(archives, clock),
      m_runner(this),
      m_printing(this, printer, texts, messages),
      flxgrdEventi(new Grid),
      m_rows(new RowsModel({}, this)),
      cmdStampa(new QPushButton),
      cmdChiudi(new QPushButton)
{
    auto *rows = new QVBoxLayout(this);
    rows->addWidget(flxgrdEventi);
    rows->addLayout(buttonRow({cmdStampa, cmdChiudi}));

    flxgrdEventi->setObjectName(QStringLiteral("flxgrdEventi"));
    cmdStampa->setObjectName(QStringLiteral("cmdStampa"));
    cmdChiudi->setObjectName(QStringLiteral("cmdChiudi"));
    m_rows->bind(flxgrdEventi);
    flxgrdEventi->horizontalHeader()->setFixedHeight(2 * flxgrdEventi->verticalHeader()->defaultSectionSize());
    flxgrdEventi->setWantedHeight(pixels(7500));

    tmrLoad.setObjectName(QStringLiteral("tmrLoad"));
    tmrRefresh.setObjectName(QStringLiteral("tmrRefresh"));
    tmrLoad.setSingleShot(true);
    tmrRefresh.setSingleShot(true);
    connect(&tmrLoad, &QTimer::timeout, this, &frmEventiOdierni::tmrLoad_Timer);
    connect(&tmrRefresh, &QTimer::timeout, this, &frmEventiOdierni::tmrRefresh_Timer);
    connect(cmdStampa, &QPushButton::clicked, this, &frmEventiOdierni::cmdStampa_Click);
    connect(cmdChiudi, &QPushButton::clicked, this, &ChildWindow::unload);
    setKeepsPlace();
    setKeys(cmdChiudi, cmdChiudi);
    frmEventiOdierni::setCaptions();
}

void frmEventiOdierni::setCaptions()
{
    setWindowTitle(m_texts[Text::UltimiEventi]);
    m_rows->setCaptions(gridColumns(EventColumns::last, m_texts));
    flxgrdEventi->setAccessibleName(windowTitle());
    cmdStampa->setText(m_texts[Text::CmdStampa]);
    cmdChiudi->setText(m_texts[Text::CmdChiudi]);
}

bool frmEventiOdierni::open()
{
    Result<void> opened = m_view.open();
    if (opened) {
        opened = m_runner
                     .runAtOnce(m_view.users(),
                                [this](const Result<void> &read) {
                                    if (!usersRead(read))
                                        unload();
                                })
                     .value_or(Result<void>());
    }
    if (!usersRead(opened))
        return false;
    if (m_view.hasArchive())
        tmrLoad.start(firstLookMilliseconds);
    return true;
}

/// @return false when they cannot be, which the operator has been told
bool frmEventiOdierni::usersRead(const Result<void> &read)
{
    if (!read) {
        m_messages.show(
            underneath(), Icon::Critical,
            m_texts.sentence({OwnText::UsersUnreadable, {QStringView(ArchiveName::Users).toString()}, read.fault()}));
    }
    return read.ok();
}

void frmEventiOdierni::cmdStampa_Click()
{
    m_printing.findPrinter([this] { printShown(); });
}

void frmEventiOdierni::printShown()
{
    const QList<ListedEvent> rows = m_view.rows();
    if (rows.isEmpty())
        return m_messages.show(this, Icon::Information, m_texts[Text::NessunEventoDisponibile]);
    // What is printed is what the operator sees.
    holdStill(true);
    const auto fields = [rows](qsizetype index) { return textsOf(EventColumns::last, rows[index]); };
    m_printing.print(
        std::make_unique<EventReport>(EventReport::Table::LastEvents, m_texts, TableReport::Rows{rows.size(), fields}),
        m_texts[Text::UltimiEventiTitolo], [this, rows](bool isPrinted) {
            holdStill(false);
            if (isPrinted)
                Q_EMIT printed({rows.constFirst().event.Data, rows.constLast().event.Data}, rows.size());
        });
}

void frmEventiOdierni::holdStill(bool still)
{
    if (still)
        tmrRefresh.stop();
    else if (!tmrLoad.isActive() && m_rows->rowCount() > 0)
        tmrRefresh.start(nextLookMilliseconds);
}

void frmEventiOdierni::tmrLoad_Timer()
{
    // Without its users no row would be right.
    if (m_runner.isRunning())
        return tmrLoad.start(waitMilliseconds);
    m_rows->setRows(m_limit, [this](qsizetype row) { return shownRow(row); });
    fill();
    tmrRefresh.start(m_view.isReading() ? 0 : secondLookMilliseconds);
}

/// @return fewer texts than columns where there is no event
QStringList frmEventiOdierni::shownRow(qsizetype row) const
{
    const QList<ListedEvent> &rows = m_view.rows();
    return row < rows.size() ? textsOf(EventColumns::last, rows[row]) : QStringList();
}

void frmEventiOdierni::tmrRefresh_Timer()
{
    fill();
    tmrRefresh.start(m_view.isReading() ? 0 : nextLookMilliseconds);
}

void frmEventiOdierni::fill()
{
    const auto newest = [this] { return m_rows->index(qMax(0, static_cast<int>(m_view.rows().size()) - 1), 0); };
    // Whoever has gone up from the newest event to read older ones is left where he is; below it there are blank rows.
    const QRect shown = flxgrdEventi->visualRect(newest());
    const bool isFollowed = shown.top() < flxgrdEventi->viewport()->height();
    const bool isPassed = shown.bottom() < 0;
    const Result<bool> refreshed = m_view.refresh(m_limit);
    if (!refreshed) {
        // The next look that succeeds shows all that was missed; only a fault that stays is worth a word.
        if (++m_failedLooks == looksBeforeTelling && !std::exchange(m_faultIsTold, true))
            m_messages.show(this, Icon::Exclamation, m_texts.sentence({OwnText::DayNotShown, {}, refreshed.fault()}),
                            [this] { m_faultIsTold = false; });
        return;
    }
    m_failedLooks = 0;
    if (refreshed.value())
        m_rows->rowsChanged();
    if (isPassed || (isFollowed && refreshed.value())) {
        flxgrdEventi->setCurrentIndex(newest());
        flxgrdEventi->scrollTo(newest());
    }
}
