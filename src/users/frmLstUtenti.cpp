#include "users/frmLstUtenti.h"

#include "codes/UserColumns.h"
#include "texts/OwnText.h"
#include "widgets/CellEditor.h"
#include "widgets/Grid.h"
#include "widgets/Messages.h"
#include "widgets/RecordSetModel.h"
#include "widgets/Twips.h"
#include "widgets/UserCombo.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>

namespace {

constexpr int loadMilliseconds = 100;
constexpr int wantedRows = 15;
constexpr double leastShare = 2.0 / 3; ///< of the main window's height

/// Longest value of each column; a caption can be longer.
QStringList samples()
{
    QStringList all;
    for (const UserColumn &column : userColumns)
        all.append(QString::fromLatin1(column.widest));
    return all;
}

QList<RecordSetModel::Column> columns(const Texts &texts)
{
    QList<RecordSetModel::Column> columns;
    for (const UserColumn &column : userColumns) {
        columns.append({QString::fromLatin1(column.field), texts[column.caption]});
        columns.last().isEditable = column.isTyped;
    }
    return columns;
}

} // namespace

frmLstUtenti::frmLstUtenti(const Texts &texts, Messages &messages, ArchiveStore &archives, Interface interface,
                           QWidget *parent)
    : ChildWindow(QStringLiteral("frmLstUtenti"), parent),
      m_texts(texts),
      m_messages(messages),
      m_archives(archives),
      m_register(archives, std::move(interface.protocol)),
      m_runner(this),
      dbgrdDati(new Grid),
      m_cell(new CellEditor(limitedText, this)),
      lblMessage(new QLabel),
      FrameRicerca(new QGroupBox),
      lblCognome(new QLabel),
      dbcmbCognome(new UserCombo(QStringLiteral("dbcmbCognome"))),
      lblNome(new QLabel),
      dbcmbNome(new UserCombo(QStringLiteral("dbcmbNome"))),
      cmdNuovo(new QPushButton),
      cmdModifica(new QPushButton),
      cmdElimina(new QPushButton),
      cmdPrecod(new QPushButton),
      cmdRicTx(new QPushButton),
      cmdDoppioni(new QPushButton),
      cmdStampa(new QPushButton),
      cmdSalva(new QPushButton),
      cmdChiudi(new QPushButton)
{
    rsDati = new RecordSetModel(columns(texts), this);
    build();
    frmLstUtenti::setCaptions();

    tmrLoad.setSingleShot(true);
    connect(&tmrLoad, &QTimer::timeout, this, &frmLstUtenti::tmrLoad_Timer);
    connect(&tmrRicOn, &QTimer::timeout, this, &frmLstUtenti::tmrRicOn_Timer);
    connect(m_cell, &CellEditor::typed, this, &frmLstUtenti::dbgrdDati_Change);
    connect(rsDati, &RecordSetModel::edited, this, &frmLstUtenti::dbgrdDati_Update);
    connect(dbgrdDati->selectionModel(), &QItemSelectionModel::currentChanged, lblMessage, &QLabel::clear);
    connect(dbcmbCognome, &UserCombo::edited, this, [this] { dbcmb_Change(dbcmbCognome, dbcmbNome, &User::Nome); });
    connect(dbcmbNome, &UserCombo::edited, this, [this] { dbcmb_Change(dbcmbNome, dbcmbCognome, &User::Cognome); });
    connect(cmdNuovo, &QPushButton::clicked, this, &frmLstUtenti::cmdNuovo_Click);
    connect(cmdModifica, &QPushButton::clicked, this, &frmLstUtenti::cmdModifica_Click);
    connect(cmdElimina, &QPushButton::clicked, this, &frmLstUtenti::cmdElimina_Click);
    connect(cmdPrecod, &QPushButton::clicked, this, &frmLstUtenti::cmdPrecod_Click);
    connect(cmdRicTx, &QPushButton::clicked, this, &frmLstUtenti::cmdRicTx_Click);
    connect(cmdDoppioni, &QPushButton::clicked, this, &frmLstUtenti::cmdDoppioni_Click);
    connect(cmdStampa, &QPushButton::clicked, this, &frmLstUtenti::cmdStampa_Click);
    connect(cmdSalva, &QPushButton::clicked, this, &frmLstUtenti::cmdSalva_Click);
    connect(cmdChiudi, &QPushButton::clicked, this, &frmLstUtenti::cmdChiudi_Click);
    // Connected before any opener can be: whoever hears of the end finds no working copy any more.
    connect(this, &ChildWindow::unloaded, this, [this] {
        if (m_child)
            m_child->unload();
        stopAll();
        // A cell that is still being edited goes without being stored.
        rsDati->setRecordSet(nullptr);
        m_register.discard();
        Q_EMIT Chiudi(m_outcome);
    });
    // No default button: Enter in the grid or in a box must not save.
    setKeys(nullptr, cmdChiudi);
    setKeepsPlace();
    setLeastHeight(leastShare);
    cmdRicTx->setEnabled(!interface.isOffLine);
}

frmLstUtenti::~frmLstUtenti()
{
    // What works on the copy ends before it, and the grid lives longer than the rows.
    delete m_child.data();
    stopAll();
    rsDati->setRecordSet(nullptr);
}

void frmLstUtenti::build()
{
    dbgrdDati->setObjectName(QStringLiteral("dbgrdDati"));
    rsDati->setObjectName(QStringLiteral("rsDati"));
    dbgrdDati->setItemDelegate(m_cell);
    dbgrdDati->setMarksCell();
    QAbstractItemView::EditTriggers triggers = QAbstractItemView::DoubleClicked;
    triggers |= QAbstractItemView::EditKeyPressed;
    triggers |= QAbstractItemView::AnyKeyPressed;
    dbgrdDati->setEditTriggers(triggers);
    // Room for the box in which a cell is changed.
    dbgrdDati->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + pixels(120));
    rsDati->bind(dbgrdDati);

    lblMessage->setObjectName(QStringLiteral("lblMessage"));
    lblMessage->setTextFormat(Qt::PlainText);
    lblMessage->setMinimumHeight(fontMetrics().height());
    FrameRicerca->setObjectName(QStringLiteral("FrameRicerca"));
    lblCognome->setObjectName(QStringLiteral("lblCognome"));
    lblCognome->setBuddy(dbcmbCognome);
    lblNome->setObjectName(QStringLiteral("lblNome"));
    lblNome->setBuddy(dbcmbNome);
    auto *search = new QGridLayout(FrameRicerca);
    search->addWidget(lblCognome, 0, 0);
    search->addWidget(dbcmbCognome, 0, 1);
    search->setColumnMinimumWidth(2, pixels(240));
    search->addWidget(lblNome, 0, 3);
    search->addWidget(dbcmbNome, 0, 4);
    search->setColumnStretch(1, 1);
    search->setColumnStretch(4, 1);

    auto *buttons = new QVBoxLayout;
    for (const auto &[button, name] :
         {std::pair(cmdNuovo, "cmdNuovo"), std::pair(cmdModifica, "cmdModifica"), std::pair(cmdElimina, "cmdElimina"),
          std::pair(cmdPrecod, "cmdPrecod"), std::pair(cmdRicTx, "cmdRicTx"), std::pair(cmdDoppioni, "cmdDoppioni"),
          std::pair(cmdStampa, "cmdStampa"), std::pair(cmdSalva, "cmdSalva"), std::pair(cmdChiudi, "cmdChiudi")}) {
        button->setObjectName(QString::fromLatin1(name));
        if (button == cmdSalva)
            buttons->addStretch();
        buttons->addWidget(button);
    }
    for (const auto &[timer, name] : {std::pair(&tmrLoad, "tmrLoad"), std::pair(&tmrRicOn, "tmrRicOn")})
        timer->setObjectName(QString::fromLatin1(name));

    auto *rows = new QGridLayout(this);
    rows->addWidget(dbgrdDati, 0, 0);
    rows->addWidget(lblMessage, 1, 0);
    rows->addWidget(FrameRicerca, 2, 0);
    rows->addLayout(buttons, 0, 1, 3, 1);
    rows->setRowStretch(0, 1);
    rows->setColumnStretch(0, 1);
}

void frmLstUtenti::setCaptions()
{
    setWindowTitle(caption());
    dbgrdDati->setAccessibleName(m_texts[Text::ListaUtenti]);
    rsDati->setCaptions(columns(m_texts));
    if (!lblMessage->text().isEmpty())
        lblMessage->setText(m_texts[Text::Max15Caratteri]);
    QList<Grid::Column> widths;
    for (int column = 0; column < samples().size(); ++column) {
        const int sample = fontMetrics().horizontalAdvance(samples()[column] + QStringLiteral("nn"));
        const bool isTyped = samples()[column].size() == UserRegister::LongestText;
        widths.append({dbgrdDati->roomFor(column, sample), isTyped});
    }
    dbgrdDati->setColumns(std::move(widths));
    dbgrdDati->setWantedRows(wantedRows);
    FrameRicerca->setTitle(m_texts[Text::Ricerca]);
    lblCognome->setText(m_texts[Text::Cognome]);
    lblNome->setText(m_texts[Text::Nome]);
    dbcmbCognome->lineEdit()->setAccessibleName(lblCognome->text());
    dbcmbNome->lineEdit()->setAccessibleName(lblNome->text());
    cmdNuovo->setText(m_texts[Text::CmdNuovo]);
    cmdModifica->setText(m_texts[Text::CmdModifica]);
    cmdElimina->setText(m_texts[Text::CmdElimina]);
    cmdPrecod->setText(m_texts[Text::CmdNuoviPrecodificati]);
    cmdRicTx->setText(m_texts[Text::CmdRiconoscimentoTx]);
    cmdDoppioni->setText(m_texts[Text::CmdDoppioni]);
    cmdStampa->setText(m_texts[Text::CmdStampa]);
    cmdSalva->setText(m_texts[Text::CmdSalva]);
    cmdChiudi->setText(m_texts[Text::CmdAnnulla]);
}

QPoint frmLstUtenti::place(QSize area, QSize own) const
{
    return {(area.width() - own.width()) / 3, (area.height() - own.height()) / 3};
}

// Opening ------------------------------------------------------------------------------------------------------------

bool frmLstUtenti::open()
{
    const bool isRestored = !m_restored.isEmpty();
    Result<void> opened = isRestored ? Result<void>() : m_register.begin();
    if (opened) {
        setEnabled(false);
        m_work = isRestored ? m_register.restoring(m_restored) : m_register.reading();
        const auto ended = m_runner.runAtOnce(*m_work, [this](const Result<void> &read) {
            if (!usersRead(read))
                unload();
        });
        if (!ended)
            return true;
        opened = *ended;
    }
    return usersRead(opened);
}

/// @return false when they cannot be, which the operator has been told
bool frmLstUtenti::usersRead(const Result<void> &read)
{
    m_work.reset();
    if (!read) {
        if (!m_restored.isEmpty() && read.fault().subject == m_restored)
            showFault(underneath(), OwnText::RestoreNotPossible, m_restored, read.fault());
        else
            showFault(underneath(), OwnText::ArchiveNotOpened, m_register.archive(), read.fault());
        return false;
    }
    fillCombos();
    tmrLoad.start(loadMilliseconds);
    return true;
}

void frmLstUtenti::tmrLoad_Timer()
{
    cmdDoppioni->setEnabled(m_register.hasTruncatedCodes());
    if (m_register.users().isEmpty())
        return loaded({});
    m_runner.run(m_register.truncatedCodes(), TaskRunner::Notice{[this] { return m_texts[Text::CaricamentoUtenti]; }},
                 [this](const Result<void> &run) { loaded(run); });
}

void frmLstUtenti::loaded(const Result<void> &result)
{
    rsDati->setRecordSet(&m_register.users());
    m_isLoaded = true;
    enable();
    if (!result)
        showFault(this, OwnText::ArchiveNotChanged, m_register.archive(), result.fault());
    else if (!m_imported.isEmpty())
        openImport();
}

// The grid -----------------------------------------------------------------------------------------------------------

void frmLstUtenti::dbgrdDati_Change(bool wasCut)
{
    m_register.setChanged();
    lblMessage->setText(wasCut ? m_texts[Text::Max15Caratteri] : QString());
}

void frmLstUtenti::dbgrdDati_Update(int row, int column, const QString &text)
{
    QString User::*field = userColumns.at(static_cast<size_t>(column)).value.member;
    const Result<void> stored = m_register.setText(row, field, text);
    m_isStored = stored.ok();
    if (!stored)
        return showFault(this, OwnText::ArchiveNotChanged, m_register.archive(), stored.fault());
    fillCombos();
}

/// Stores the cell that is being edited. @return false when that cannot be done, which the operator has been told
bool frmLstUtenti::commitCell()
{
    m_isStored = true;
    m_cell->commit();
    return m_isStored;
}

void frmLstUtenti::fillCombos()
{
    dbcmbCognome->setEntries(m_register.surnames().entries());
    dbcmbNome->setEntries(m_register.firstNames().entries());
}

/// After rows came or went.
void frmLstUtenti::showRows()
{
    rsDati->refresh();
    dbgrdDati->scrollTo(dbgrdDati->currentIndex());
}

/// After another user became current.
void frmLstUtenti::showCurrent()
{
    const int column = qMax(0, dbgrdDati->currentIndex().column());
    dbgrdDati->setCurrentIndex(rsDati->index(static_cast<int>(m_register.users().position()), column));
}

// Closing ------------------------------------------------------------------------------------------------------------

/// Saves and closes. @param isClosing  the operator has asked for the close
void frmLstUtenti::save(bool isClosing)
{
    endRecognition();
    m_work = m_register.saving();
    const auto ended =
        m_runner.runAtOnce(*m_work, [this, isClosing](const Result<void> &result) { saved(result, isClosing); });
    if (ended)
        saved(*ended, isClosing);
    else
        setEnabled(false);
}

void frmLstUtenti::saved(const Result<void> &result, bool isClosing)
{
    m_work.reset();
    if (result)
        return end(Esito::Saved);
    enable();
    showFault(this, OwnText::ArchiveNotSaved, m_register.archive(), result.fault());
    if (isClosing)
        refuseClose();
}

void frmLstUtenti::end(Esito outcome)
{
    m_outcome = outcome;
    unload();
}

void frmLstUtenti::cmdSalva_Click()
{
    if (commitCell())
        save(false);
}

void frmLstUtenti::cmdChiudi_Click()
{
    if (!commitCell())
        return;
    if (!m_register.isChanged())
        return end(Esito::NotSaved);
    endRecognition();
    m_messages.ask(this, m_texts[Text::TuttiICambiamentiVerrannoAnnullati], Messages::Buttons::YesNo,
                   [this](Messages::Answer answer) {
                       if (answer == Messages::Answer::Yes)
                           end(Esito::NotSaved);
                   });
}

bool frmLstUtenti::canClose()
{
    // One question is enough, however often the close is asked for.
    if (m_isAsking)
        return false;
    if (!commitCell()) {
        refuseClose();
        return false;
    }
    if (!m_register.isChanged())
        return true;
    endRecognition();
    m_isAsking = true;
    m_messages.ask(this, m_texts[Text::SalvareICambiamenti], Messages::Buttons::YesNoCancel,
                   [this](Messages::Answer answer) {
                       m_isAsking = false;
                       if (answer == Messages::Answer::No)
                           end(Esito::NotSaved);
                       else if (answer == Messages::Answer::Yes)
                           save(true);
                       else
                           refuseClose();
                   });
    return false;
}

void frmLstUtenti::showFault(QWidget *over, OwnText text, const QString &subject, const Fault &fault)
{
    m_messages.show(over, Icon::Critical, m_texts.sentence({text, {subject}, fault}));
}
