#include "journal/frmJournal.h"

#include "journal/BandLegend.h"
#include "journal/CoverageWords.h"
#include "journal/DayBand.h"
#include "journal/JournalReport.h"
#include "journal/JournalView.h"
#include "texts/DateTimeText.h"
#include "texts/OwnText.h"
#include "widgets/Accessibility.h"
#include "widgets/Fields.h"
#include "widgets/Forms.h"
#include "widgets/Grid.h"
#include "widgets/Messages.h"
#include "widgets/RowsModel.h"

#include <QCheckBox>
#include <QLabel>

namespace {

constexpr int daysOfAWeek = 7;
constexpr int leastDays = 4;             ///< in sight
constexpr double journalShare = 2.0 / 3; ///< of the main window's height

} // namespace

frmJournal::frmJournal(const Texts &texts, Messages &messages, Journal &journal, const CurrentPrinter &printer,
                       QWidget *parent)
    : ChildWindow(QStringLiteral("frmJournal"), parent),
      m_texts(texts),
      m_messages(messages),
      m_journal(journal),
      m_runner(this),
      m_printing(this, printer, texts, messages),
      m_dayRows(new RowsModel(dayColumns(), this)),
      m_bands(new DayBand(texts, this)),
      m_noteRows(new RowsModel(noteColumns(), this))
{
    build();
    frmJournal::setCaptions();
    const QDate today = localTime(journal.momentBefore(0)).date();
    txtFrom->setText(DataBarre(today.addDays(1 - daysOfAWeek)));
    txtTo->setText(DataBarre(today));

    connect(cmdShow, &QPushButton::clicked, this, &frmJournal::cmdShow_Click);
    for (QCheckBox *box : chkGroups)
        connect(box, &QCheckBox::toggled, this, &frmJournal::chkGroups_Click);
    connect(cmdStampa, &QPushButton::clicked, this, &frmJournal::cmdStampa_Click);
    connect(cmdChiudi, &QPushButton::clicked, this, &ChildWindow::unload);
    setKeys(cmdShow, cmdChiudi);
    setKeepsPlace();
    setLeastHeight(journalShare);
    txtFrom->setFocus();
}

frmJournal::~frmJournal() = default;

void frmJournal::build()
{
    fraRange = buildParameters();
    const auto label = [](const char *name) {
        auto *made = new QLabel;
        made->setObjectName(QString::fromLatin1(name));
        made->setTextFormat(Qt::PlainText);
        return made;
    };
    const auto button = [](const char *name) {
        auto *made = new QPushButton;
        made->setObjectName(QString::fromLatin1(name));
        return made;
    };
    grdDays = new Grid;
    grdDays->setObjectName(QStringLiteral("grdDays"));
    m_dayRows->bind(grdDays);
    grdDays->setItemDelegateForColumn(1, m_bands);
    grdDays->setWantedRows(daysOfAWeek);
    grdDays->setLeastRows(leastDays);
    lblDays = label("lblDays");
    lblDays->hide();
    lblCoverage = label("lblCoverage");
    grdRows = new Grid;
    grdRows->setObjectName(QStringLiteral("grdRows"));
    m_noteRows->bind(grdRows);
    grdRows->setWantedHeight(pixels(3600));
    cmdShow = button("cmdShow");
    cmdStampa = button("cmdStampa");
    cmdChiudi = button("cmdChiudi");
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdShow);
    buttons->addStretch();
    buttons->addWidget(cmdStampa);
    buttons->addWidget(cmdChiudi);

    auto *rows = new QVBoxLayout(this);
    rows->addWidget(fraRange);
    rows->addWidget(grdDays, 1);
    rows->addWidget(m_legend = new BandLegend);
    rows->addWidget(lblDays);
    rows->addWidget(lblCoverage);
    rows->addWidget(grdRows, 1);
    rows->addLayout(buttons);
}

Fields *frmJournal::buildParameters()
{
    auto *frame = new Fields;
    frame->setObjectName(QStringLiteral("fraRange"));
    const auto place = [frame](QLabel *&label, const char *name, QWidget *box) {
        label = new QLabel;
        label->setObjectName(QString::fromLatin1(name));
        label->setBuddy(box);
        frame->add(label, box);
    };
    const auto edit = [this](const char *name) {
        auto *box = new QLineEdit;
        box->setObjectName(QString::fromLatin1(name));
        box->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("00/00/000000")));
        return box;
    };
    place(lblFrom, "lblFrom", txtFrom = edit("txtFrom"));
    place(lblTo, "lblTo", txtTo = edit("txtTo"));
    auto *groups = new Grouping;
    auto *row = new QHBoxLayout(groups);
    row->setContentsMargins(0, 0, 0, 0);
    for (size_t i = 0; i < chkGroups.size(); ++i) {
        auto *box = new QCheckBox;
        box->setObjectName(QStringLiteral("chkGroups(%1)").arg(i));
        box->setChecked(true);
        row->addWidget(chkGroups.at(i) = box);
    }
    row->addStretch();
    lblGroups = new QLabel;
    lblGroups->setObjectName(QStringLiteral("lblGroups"));
    lblGroups->setBuddy(chkGroups[0]);
    frame->add(lblGroups, groups, Fields::Row::New);
    return frame;
}

QList<RowsModel::Column> frmJournal::dayColumns() const
{
    return {{m_texts[Text::Data], 1000, Qt::AlignHCenter | Qt::AlignVCenter, QStringLiteral("00/00/0000")},
            {m_texts[OwnText::JournalBands], 3000, Qt::AlignLeft | Qt::AlignVCenter, {}, true}};
}

QList<RowsModel::Column> frmJournal::noteColumns() const
{
    const JournalRow longest = {{},
                                {},
                                JournalKind::Searched,
                                QStringLiteral("00/00/0000 - 00/00/0000, 00:00:00 - 00:00:00"),
                                QStringLiteral("000000")};
    return {{m_texts[Text::Data], 1000, Qt::AlignHCenter | Qt::AlignVCenter, QStringLiteral("00/00/0000")},
            {m_texts[Text::Ora], 800, Qt::AlignHCenter | Qt::AlignVCenter, QStringLiteral("00:00:00")},
            {m_texts[OwnText::JournalWhat], 6000, Qt::AlignLeft | Qt::AlignVCenter, rowWords(longest, m_texts), true}};
}

/// The rows themselves are made of the journal whenever they are painted.
void frmJournal::setCaptions()
{
    m_dayRows->setCaptions(dayColumns());
    m_noteRows->setCaptions(noteColumns());
    m_legend->setCaptions(m_texts);
    lblDays->setText(m_texts[OwnText::JournalLastDays].arg(MostDays));
    sayCoverage();
    setWindowTitle(TogliAnd(m_texts[OwnText::MnuJournal]));
    fraRange->setAccessibleName(windowTitle());
    lblFrom->setText(m_texts[Text::DallaData]);
    lblTo->setText(m_texts[Text::AllaData]);
    lblGroups->setText(m_texts[OwnText::JournalGroups]);
    chkGroups[0]->parentWidget()->setAccessibleName(lblGroups->text());
    for (size_t i = 0; i < chkGroups.size(); ++i)
        chkGroups.at(i)->setText(groupWords(static_cast<JournalGroup>(i), m_texts));
    grdDays->setAccessibleName(m_texts[OwnText::JournalBands]);
    grdRows->setAccessibleName(windowTitle());
    cmdShow->setText(m_texts[OwnText::JournalShow]);
    cmdStampa->setText(m_texts[Text::CmdStampa]);
    cmdChiudi->setText(m_texts[Text::CmdChiudi]);
}

void frmJournal::resizeEvent(QResizeEvent *event)
{
    ChildWindow::resizeEvent(event);
    fraRange->fit(roomForContent());
    sayCoverage();
}

void frmJournal::showEvent(QShowEvent *event)
{
    ChildWindow::showEvent(event);
    // What was read before had no size to be shown in.
    QMetaObject::invokeMethod(this, &frmJournal::goToEnd, Qt::QueuedConnection);
}

/// The latest is what is asked for.
void frmJournal::goToEnd()
{
    grdDays->scrollToBottom();
    grdRows->scrollToBottom();
}

bool frmJournal::open()
{
    m_hasOpened = true;
    cmdShow_Click();
    return true;
}

void frmJournal::show(QDate first, QDate last)
{
    txtFrom->setText(DataBarre(first));
    txtTo->setText(DataBarre(last));
    if (m_hasOpened)
        read(first, last);
}

void frmJournal::cmdShow_Click()
{
    for (QLineEdit *box : {txtFrom, txtTo}) {
        if (!DataValida(box->text()))
            return refuse(Text::FormatoDataNonCorretto, box);
    }
    if (DataOrdinabile(txtFrom->text()) > DataOrdinabile(txtTo->text()))
        return refuse(Text::DataDiPartenzaDopoArrivo, txtFrom);
    read(rangeDay(txtFrom->text(), End::First), rangeDay(txtTo->text(), End::Last));
}

void frmJournal::refuse(Text message, QLineEdit *box)
{
    const auto select = [box] {
        box->setFocus();
        box->selectAll();
    };
    select();
    m_messages.show(this, Icon::Exclamation, m_texts[message], select);
}

void frmJournal::read(QDate first, QDate last)
{
    m_runner.stop();
    const Moment now = m_journal.momentBefore(0);
    m_first = first;
    // Of what lies ahead there is nothing to show.
    m_last = qMin(last, localTime(now).date());
    m_reading = m_journal.read({first, last}, now);
    cmdStampa->setEnabled(false);
    if (m_runner.runAtOnce(*m_reading, [this](const Result<void> & /*never fails*/) { showRead(); }))
        showRead();
}

void frmJournal::showRead()
{
    m_rows = m_reading->rows();
    cmdStampa->setEnabled(true);
    showDays();
    showRows();
    goToEnd();
    if (const std::optional<Fault> unread = m_reading->unread())
        m_messages.show(this, Icon::Exclamation,
                        m_texts.sentence({OwnText::JournalNotRead, {unread->subject}, unread}));
}

void frmJournal::showDays()
{
    const QList<CoveredSpan> &spans = m_reading->spans();
    m_dayRows->setRows(0, {});
    m_bands->setDays(lastDays(spans, m_first, m_last, MostDays));
    m_dayRows->setRows(m_bands->days().size(), [this](qsizetype row) {
        const DayCoverage &day = m_bands->days()[row];
        return QStringList{DataBarre(day.day), dayWords(day, m_texts)};
    });
    lblDays->setVisible(m_first.daysTo(m_last) >= MostDays);
    sayCoverage();
}

/// What is known of the days that were read; "" where none were.
QString frmJournal::coverage() const
{
    const bool isRead = m_reading && !m_runner.isRunning() && !m_reading->spans().isEmpty();
    return isRead ? coverageWords(missingOf(m_reading->spans()), m_texts) : QString();
}

void frmJournal::sayCoverage()
{
    lblCoverage->setText(inLines(coverage(), fontMetrics(), roomForContent()));
}

void frmJournal::showRows()
{
    RowChoice choice = {secondsOf(m_first.startOfDay(), m_last.endOfDay()), {}};
    for (size_t i = 0; i < chkGroups.size(); ++i)
        choice.groups.at(i) = chkGroups.at(i)->isChecked();
    m_shown.clear();
    for (qsizetype i = 0; i < m_rows.size(); ++i) {
        if (choice.takes(m_rows[i]))
            m_shown.append(i);
    }
    m_noteRows->setRows(m_shown.size(),
                        [this](qsizetype row) { return JournalReport::fields(m_rows[m_shown[row]], m_texts); });
    grdRows->setCurrentIndex(m_noteRows->index(static_cast<int>(m_shown.size()) - 1, 0));
    grdRows->scrollToBottom();
}

void frmJournal::chkGroups_Click()
{
    if (m_reading && !m_runner.isRunning())
        showRows();
}

void frmJournal::cmdStampa_Click()
{
    m_printing.findPrinter([this] { print(); });
}

void frmJournal::print()
{
    if (m_shown.isEmpty())
        return m_messages.show(this, Icon::Information, m_texts[OwnText::JournalNoRows]);
    // As they are now, whatever the operator chooses meanwhile.
    const auto fields = [this, rows = m_rows, shown = m_shown](qsizetype row) {
        return JournalReport::fields(rows[shown[row]], m_texts);
    };
    m_printing.print(std::make_unique<JournalReport>(m_texts, TableReport::Rows{m_shown.size(), fields}, coverage()),
                     windowTitle());
}
