#include "events/frmEventi.h"

#include "archives/Tables.h"
#include "events/CoverageLine.h"
#include "events/EventGrid.h"
#include "events/EventHistogram.h"
#include "startup/PlainText.h"
#include "texts/OwnText.h"
#include "texts/Texts.h"
#include "widgets/Accessibility.h"
#include "widgets/Fields.h"
#include "widgets/Filtering.h"
#include "widgets/Grid.h"
#include "widgets/Messages.h"
#include "widgets/Twips.h"
#include "widgets/UserCombo.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

constexpr double searchShare = 2.0 / 3; ///< of the main window's height

} // namespace

frmEventi::frmEventi(const Texts &texts, Messages &messages, ArchiveStore &archives, const Clock &clock,
                     const CurrentPrinter &printer, Journal &journal, QWidget *parent)
    : ChildWindow(QStringLiteral("frmEventi"), parent),
      m_texts(texts),
      m_messages(messages),
      m_clock(clock),
      m_disk(archives.folder().disk()),
      m_users(archives, ArchiveName::SearchUsers),
      m_surnames(m_users.names(&User::Cognome)),
      m_firstNames(m_users.names(&User::Nome)),
      m_opening({&m_users, &m_surnames, &m_firstNames}),
      m_search(archives, m_users),
      m_runner(this),
      m_printing(this, printer, texts, messages),
      m_rows(new RowsModel({}, this)),
      m_coverage(new CoverageLine(texts, journal, this))
{
    build();
    frmEventi::setCaptions();
    const QString today = DataBarre(clock.date());
    txtDataOrig->setText(today);
    txtDataFine->setText(today);
    txtOraIn->setText(QStringLiteral("00:00:00"));
    txtOraFine->setText(QStringLiteral("23:59:59"));

    connect(txtCodice, &QLineEdit::textChanged, this, &frmEventi::txtCodice_Change);
    connect(dbcmbCognome, &UserCombo::edited, this, &frmEventi::dbcmbCognome_Change);
    connect(dbcmbNome, &UserCombo::edited, this, &frmEventi::dbcmbNome_Change);
    connect(m_coverage, &CoverageLine::journalWanted, this, &frmEventi::journalWanted);
    connect(m_histogram, &EventHistogram::rowChosen, this, [this](qsizetype row) {
        dbgrdDati->setCurrentIndex(m_rows->index(static_cast<int>(row), 0));
        dbgrdDati->scrollTo(dbgrdDati->currentIndex(), QTableView::PositionAtTop);
    });
    connect(cmdRicerca, &QPushButton::clicked, this, &frmEventi::cmdRicerca_Click);
    connect(cmdStampa, &QPushButton::clicked, this, &frmEventi::cmdStampa_Click);
    connect(cmdToExcel, &QPushButton::clicked, this, &frmEventi::cmdToExcel_Click);
    connect(cmdChiudi, &QPushButton::clicked, this, &ChildWindow::unload);
    setKeys(cmdRicerca, cmdChiudi);
    setKeepsPlace();
    setLeastHeight(searchShare);
    txtDataOrig->setFocus();
}

frmEventi::~frmEventi() = default;

void frmEventi::build()
{
    FrameRic = buildParameters();
    dbgrdDati = new Grid;
    dbgrdDati->setObjectName(QStringLiteral("dbgrdDati"));
    m_rows->bind(dbgrdDati);
    dbgrdDati->setWantedHeight(pixels(3600));
    m_histogram = new EventHistogram(m_texts);

    const auto button = [](const char *name) {
        auto *made = new QPushButton;
        made->setObjectName(QString::fromLatin1(name));
        return made;
    };
    cmdRicerca = button("cmdRicerca");
    cmdStampa = button("cmdStampa");
    cmdToExcel = button("cmdToExcel");
    cmdChiudi = button("cmdChiudi");
    lblTrovati = new QLabel;
    lblTrovati->setObjectName(QStringLiteral("lblTrovati"));
    m_buttons = new QGridLayout;
    m_buttons->setColumnStretch(1, 1);
    m_buttons->addWidget(cmdRicerca, 1, 0);
    m_buttons->addWidget(lblTrovati, 1, 1);
    m_buttons->addWidget(cmdStampa, 1, 2);
    m_buttons->addWidget(cmdToExcel, 1, 3);
    m_buttons->addWidget(cmdChiudi, 1, 4);

    auto *rows = new QVBoxLayout(this);
    rows->addWidget(FrameRic);
    rows->addWidget(dbgrdDati, 1);
    rows->addWidget(m_coverage, 0, Qt::AlignLeft);
    rows->addWidget(m_histogram);
    rows->addLayout(m_buttons);
}

Fields *frmEventi::buildParameters()
{
    auto *frame = new Fields;
    frame->setObjectName(QStringLiteral("FrameRic"));
    const auto place = [frame](QLabel *&label, const char *name, QWidget *box, Fields::Row row = Fields::Row::Same) {
        label = new QLabel;
        label->setObjectName(QString::fromLatin1(name));
        label->setBuddy(box);
        frame->add(label, box, row);
    };
    const auto edit = [this](const char *name, int characters) {
        auto *box = new QLineEdit;
        box->setObjectName(QString::fromLatin1(name));
        box->setMinimumWidth(fontMetrics().horizontalAdvance(QString(characters + 2, QLatin1Char('0'))));
        return box;
    };
    const auto check = [](const QString &name, const QString &caption) {
        auto *box = new QCheckBox(caption);
        box->setObjectName(name);
        box->setChecked(true);
        return box;
    };
    place(lblDataOrig, "lblDataOrig", txtDataOrig = edit("txtDataOrig", 10));
    place(lblDataFine, "lblDataFine", txtDataFine = edit("txtDataFine", 10));
    place(lblOraPart, "lblOraPart", txtOraIn = edit("txtOraIn", 8));
    place(lblOraFine, "lblOraFine", txtOraFine = edit("txtOraFine", 8));
    place(lblCodice, "lblCodice", txtCodice = edit("txtCodice", 10), Fields::Row::New);
    place(lblCognome, "lblCognome", dbcmbCognome = new UserCombo(QStringLiteral("dbcmbCognome")));
    place(lblNome, "lblNome", dbcmbNome = new UserCombo(QStringLiteral("dbcmbNome")));

    auto *channels = new Grouping;
    auto *channelRow = new QHBoxLayout(channels);
    channelRow->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < 4; ++i) {
        auto *box = check(QStringLiteral("chkCanali(%1)").arg(i), QString(QChar(u'A' + i)));
        channelRow->addWidget(chkCanali[static_cast<std::size_t>(i)] = box);
    }
    channelRow->addStretch();
    place(lblCanali, "lblCanali", channels, Fields::Row::New);
    lblCanali->setBuddy(chkCanali[0]);
    auto *types = new Grouping;
    auto *typeRow = new QHBoxLayout(types);
    typeRow->setContentsMargins(0, 0, 0, 0);
    typeRow->addWidget(chkTipo[0] = check(QStringLiteral("chkTipo(0)"), QStringLiteral("TX")));
    typeRow->addWidget(chkTipo[1] = check(QStringLiteral("chkTipo(1)"), QStringLiteral("DKS")));
    typeRow->addStretch();
    place(lblTipo, "lblTipo", types);
    lblTipo->setBuddy(chkTipo[0]);
    cmbCanali = new QComboBox;
    cmbCanali->setObjectName(QStringLiteral("cmbCanali"));
    cmbCanali->addItems(QStringList(3));
    place(lblTipoEv, "lblTipoEv", cmbCanali);
    return frame;
}

void frmEventi::resizeEvent(QResizeEvent *event)
{
    ChildWindow::resizeEvent(event);
    FrameRic->fit(roomForContent());
    m_coverage->fit(roomForContent());
    fitButtons();
}

/// What was found stands between the buttons; above them where it would push them out of the window.
void frmEventi::fitButtons()
{
    int wanted = lblTrovati->sizeHint().width();
    for (const QPushButton *button : {cmdRicerca, cmdStampa, cmdToExcel, cmdChiudi})
        wanted += m_buttons->horizontalSpacing() + button->sizeHint().width();
    m_buttons->removeWidget(lblTrovati);
    if (wanted > roomForContent())
        m_buttons->addWidget(lblTrovati, 0, 0, 1, -1);
    else
        m_buttons->addWidget(lblTrovati, 1, 1);
}

void frmEventi::setCaptions()
{
    const QString colon = QStringLiteral(":");
    setWindowTitle(m_texts[Text::RicercaEventi]);
    m_rows->setCaptions(gridColumns(EventColumns::found, m_texts));
    m_coverage->setCaptions();
    dbgrdDati->setAccessibleName(windowTitle());
    FrameRic->setTitle(m_texts[Text::ParametriDiRicerca]);
    lblDataOrig->setText(m_texts[Text::DallaData]);
    lblDataFine->setText(m_texts[Text::AllaData]);
    lblOraPart->setText(m_texts[Text::OraInizio]);
    lblOraFine->setText(m_texts[Text::OraFine]);
    lblCodice->setText(m_texts[Text::Codice] + colon);
    lblCognome->setText(m_texts[Text::Cognome]);
    lblNome->setText(m_texts[Text::Nome]);
    dbcmbCognome->lineEdit()->setAccessibleName(lblCognome->text());
    dbcmbNome->lineEdit()->setAccessibleName(lblNome->text());
    lblCanali->setText(m_texts[Text::CanaliEtichetta]);
    chkCanali[0]->parentWidget()->setAccessibleName(lblCanali->text());
    lblTipo->setText(m_texts[Text::Tipo] + colon);
    chkTipo[0]->parentWidget()->setAccessibleName(lblTipo->text());
    lblTipoEv->setText(m_texts[Text::TipoDiEvento]);
    int state = 0;
    for (const Text text : {Text::Tutti, Text::SoloAbilitati, Text::SoloDisabilitati})
        cmbCanali->setItemText(state++, m_texts[text]);
    cmdRicerca->setText(m_texts[Text::CmdRicerca]);
    cmdStampa->setText(m_texts[Text::CmdStampa]);
    cmdToExcel->setText(m_texts[Text::CmdEsportaInExcel]);
    cmdChiudi->setText(m_texts[Text::CmdChiudi]);
    m_histogram->setCaptions();
    showCount(!lblTrovati->text().isEmpty());
    FrameRic->fit(roomForContent());
}

bool frmEventi::open()
{
    Result<void> opened = m_users.begin();
    if (opened)
        opened = m_search.prepare();
    if (opened) {
        const auto ended = m_runner.runAtOnce(m_opening, [this](const Result<void> &read) {
            setReading(false);
            if (namesRead(read))
                return;
            unload();
        });
        if (!ended) {
            setReading(true);
            return true;
        }
        opened = *ended;
    }
    return namesRead(opened);
}

/// @return whether the users are known, or else the operator has been told
bool frmEventi::namesRead(const Result<void> &read)
{
    if (!read) {
        m_messages.show(underneath(), Icon::Critical, m_texts.sentence({OwnText::SearchNotPossible, {}, read.fault()}));
        return false;
    }
    dbcmbCognome->setEntries(m_surnames.take());
    dbcmbNome->setEntries(m_firstNames.take());
    return true;
}

void frmEventi::txtCodice_Change()
{
    keepAccepted(txtCodice, SoloCifre);
    if (txtCodice->text().isEmpty())
        return;
    dbcmbCognome->showEntry({});
    dbcmbNome->showEntry({});
}

void frmEventi::dbcmbCognome_Change()
{
    showPartner(dbcmbCognome, dbcmbNome, &User::Nome);
}

void frmEventi::dbcmbNome_Change()
{
    showPartner(dbcmbNome, dbcmbCognome, &User::Cognome);
}

void frmEventi::showPartner(const UserCombo *chosen, UserCombo *other, QString User::*name)
{
    if (!chosen->currentText().isEmpty())
        txtCodice->clear();
    const std::optional<qint64> place = chosen->shown();
    other->showEntry(place && !(m_users.users()[*place].*name).isEmpty() ? place : std::nullopt);
}

void frmEventi::cmdRicerca_Click()
{
    const TypedQuery wanted = query();
    if (const QueryFault fault = checkQuery(wanted, m_users); fault != QueryFault::None)
        return refuse(fault);
    m_rows->setRows(0, {});
    showFound(false);
    m_coverage->forget();
    const EventQuery asked = eventQuery(wanted);
    m_searched = asked.hours();
    // What is searched later on can have been stored later on: it is not known to be all.
    m_searchedAt = momentOf(m_clock.now());
    if (const Result<void> started = m_search.start(asked); !started) {
        m_messages.show(this, Icon::Critical, m_texts.sentence({OwnText::SearchNotPossible, {}, started.fault()}));
        return;
    }
    setBusy(true);
    m_runner.run(m_search,
                 TaskRunner::Notice{[this] { return m_texts[Text::RicercaInCorso]; },
                                    [this] { return m_texts[Text::CmdAnnulla]; },
                                    [this] { return m_texts[Text::Giorno] + DataBarre(m_search.day()); }},
                 [this](const Result<void> &searched) { searchDone(searched); });
}

TypedQuery frmEventi::query() const
{
    TypedQuery wanted;
    wanted.firstDay = txtDataOrig->text();
    wanted.lastDay = txtDataFine->text();
    wanted.from = txtOraIn->text();
    wanted.to = txtOraFine->text();
    wanted.code = txtCodice->text();
    // The code is that of the surname: who has none cannot be searched for by name.
    if (!dbcmbCognome->currentText().isEmpty() || !dbcmbNome->currentText().isEmpty()) {
        const std::optional<qint64> place = dbcmbCognome->shown();
        wanted.person = EventQuery::Person{place ? m_users.users()[*place].Codice : QString()};
    }
    for (std::size_t i = 0; i < chkCanali.size(); ++i)
        wanted.channels[i] = chkCanali[i]->isChecked();
    wanted.transmitters = chkTipo[0]->isChecked();
    wanted.keypads = chkTipo[1]->isChecked();
    wanted.state = static_cast<EventQuery::State>(cmbCanali->currentIndex());
    return wanted;
}

void frmEventi::refuse(QueryFault fault)
{
    const auto box = [this, fault]() -> QLineEdit * {
        switch (fault) {
        case QueryFault::FirstDay:
        case QueryFault::Order:
            return txtDataOrig;
        case QueryFault::LastDay:
            return txtDataFine;
        case QueryFault::From:
            return txtOraIn;
        case QueryFault::To:
            return txtOraFine;
        default:
            return nullptr;
        }
    }();
    const auto select = [box] {
        if (box) {
            box->setFocus();
            box->selectAll();
        }
    };
    select();
    m_messages.show(this, Icon::Exclamation, m_texts[queryText(fault)], select);
}

Result<QStringList> frmEventi::foundRow(qsizetype row) const
{
    const Result<ListedEvent> event = m_search.results().row(row);
    return event ? Result<QStringList>(textsOf(EventColumns::found, event.value())) : event.fault();
}

QStringList frmEventi::shownRow(qsizetype row)
{
    const Result<QStringList> fields = foundRow(row);
    if (fields)
        return fields.value();
    // Once, and not from within the painting of the grid.
    if (!std::exchange(m_rowFaultTold, true)) {
        const QString text = m_texts.sentence({OwnText::ResultsUnreadable, {}, fields.fault()});
        QMetaObject::invokeMethod(
            this, [this, text] { m_messages.show(this, Icon::Critical, text); }, Qt::QueuedConnection);
    }
    return {};
}

void frmEventi::setBusy(bool busy)
{
    FrameRic->setEnabled(!busy);
    cmdRicerca->setEnabled(!busy);
    cmdStampa->setEnabled(!busy);
    cmdToExcel->setEnabled(!busy);
}

void frmEventi::setReading(bool reading)
{
    for (QWidget *control : QList<QWidget *>{dbcmbCognome, dbcmbNome, cmdRicerca, cmdStampa, cmdToExcel})
        control->setEnabled(!reading);
}
