#include "texts/DateTimeText.h"
#include "texts/OwnText.h"
#include "users/frmAddCod.h"
#include "users/frmImport.h"
#include "users/frmInsCodice.h"
#include "users/frmLstUtenti.h"
#include "users/frmRepDoppioni.h"
#include "widgets/Grid.h"
#include "widgets/Messages.h"
#include "widgets/RecordSetModel.h"
#include "widgets/Twips.h"
#include "widgets/UserCombo.h"

#include <QDateTime>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>

// What the register does with its users: their codes, finding them, and the tasks that look at all of them.

namespace {

constexpr int tickMilliseconds = 100;

} // namespace

// The caption -------------------------------------------------------------------------------------------------------

void frmLstUtenti::restoreFrom(const QString &file)
{
    m_restored = file;
    setWindowTitle(caption());
}

QString frmLstUtenti::caption() const
{
    if (m_restored.isEmpty())
        return m_texts[Text::ListaUtenti];
    const QDateTime saved = QFileInfo(m_restored).lastModified();
    // The day comes first: a long path is cut at its end.
    const QString folder = m_archives.folder().root() + QLatin1Char('/');
    const QString name = m_restored.startsWith(folder) ? m_restored.sliced(folder.size()) : m_restored;
    return m_texts[Text::ListaUtenti] + QLatin1Char(' ') +
           m_texts.sentence({OwnText::RestoredFrom, {dayAndTime(saved), name}, {}});
}

/// Whether there is no user, which the operator is told.
bool frmLstUtenti::isEmpty()
{
    if (!m_register.users().isEmpty())
        return false;
    m_messages.show(this, Icon::Information, m_texts[Text::NessunUtenteRegistrato]);
    return true;
}

// Codes --------------------------------------------------------------------------------------------------------------

void frmLstUtenti::openOver(ChildWindow *window, std::function<QPoint(QRect own, QSize child)> place)
{
    endRecognition();
    setEnabled(false);
    // In the client area it is the frame that has a place.
    const QRect own = parentWidget() ? parentWidget()->geometry() : geometry();
    window->placeBy([own, place = std::move(place)](QSize child) { return place(own, child); });
    m_child = window;
    Q_EMIT openChild(window);
}

/// @param user  row of the one who gets another code, 0 for a new one
void frmLstUtenti::openCode(std::optional<QString> CodMod, qint64 user)
{
    auto *objInsCodice =
        new frmInsCodice(m_texts, m_messages, std::move(CodMod),
                         [this](const QString &code, CodeType type) { return m_register.contains(code, type); });
    connect(objInsCodice, &frmInsCodice::Chiudi, this,
            [this, user](const QString &code, CodeType type, frmInsCodice::Esito outcome) {
                objInsCodice_Chiudi(user, code, type, outcome);
            });
    openOver(objInsCodice, [](QRect own, QSize) { return own.topLeft() + QPoint(pixels(300), pixels(500)); });
}

void frmLstUtenti::cmdNuovo_Click()
{
    if (commitCell())
        openCode({}, 0);
}

void frmLstUtenti::cmdModifica_Click()
{
    if (commitCell() && !isEmpty())
        openCode(m_register.current().Codice, m_register.users().rowId());
}

void frmLstUtenti::objInsCodice_Chiudi(qint64 user, const QString &Codice, CodeType Tipo, frmInsCodice::Esito esito)
{
    enable();
    if (esito != frmInsCodice::Esito::Confirmed)
        return;
    const Result<void> stored = user == 0 ? m_register.add(Codice, Tipo) : m_register.changeCode(user, Codice, Tipo);
    showRows();
    if (!stored)
        showFault(this, OwnText::ArchiveNotChanged, m_register.archive(), stored.fault());
}

void frmLstUtenti::cmdElimina_Click()
{
    if (!commitCell() || isEmpty())
        return;
    const User user = m_register.current();
    const QString question =
        m_texts[Text::EliminareUtente] + user.Cognome + QLatin1Char(' ') + user.Nome + QStringLiteral(" ?");
    endRecognition();
    // He who was asked about, whoever may be current by then.
    const qint64 row = m_register.users().rowId();
    m_messages.ask(this, question, Messages::Buttons::YesNo, [this, row](Messages::Answer answer) {
        if (answer != Messages::Answer::Yes || !m_register.users().moveToRow(row))
            return;
        const Result<void> removed = m_register.remove();
        showRows();
        fillCombos();
        if (!removed)
            showFault(this, OwnText::ArchiveNotChanged, m_register.archive(), removed.fault());
    });
}

void frmLstUtenti::cmdPrecod_Click()
{
    if (!commitCell())
        return;
    auto *objAddCod = new frmAddCod(m_texts, m_messages, m_register);
    connect(objAddCod, &frmAddCod::Chiudi, this, &frmLstUtenti::objAddCod_Chiudi);
    openOver(objAddCod, [](QRect own, QSize child) {
        return QPoint(own.left() + (own.width() - child.width()) / 2, own.top() + pixels(500));
    });
}

void frmLstUtenti::objAddCod_Chiudi(frmAddCod::Esito esito)
{
    enable();
    if (esito == frmAddCod::Esito::Done)
        showRows();
}

// Finding ------------------------------------------------------------------------------------------------------------

void frmLstUtenti::cmdRicTx_Click()
{
    if (!commitCell() || isEmpty())
        return;
    cmdRicTx->setEnabled(false);
    m_received.reset();
    m_recognition.start();
    tmrRicOn.start(tickMilliseconds);
}

void frmLstUtenti::recordReceived(const EventRecord &record)
{
    m_received = record;
    if (auto *code = qobject_cast<frmInsCodice *>(m_child))
        code->recordReceived(record);
}

void frmLstUtenti::tmrRicOn_Timer()
{
    const RecognitionWait::Tick tick = m_recognition.tick(m_received.has_value());
    if (tick == RecognitionWait::Tick::Again)
        return;
    endRecognition();
    if (tick == RecognitionWait::Tick::GivenUp || !commitCell())
        return;
    const bool isFound = m_register.find(m_received->code);
    dbgrdDati->setCurrentIndex(rsDati->index(static_cast<int>(m_register.users().position()), 0));
    if (!isFound)
        m_messages.show(this, Icon::Information,
                        QStringList{m_texts[Text::IlCodice], typeText(m_received->type), m_received->code,
                                    m_texts[Text::NonPresenteInAnagrafica]}
                            .join(QLatin1Char(' ')));
}

/// The next code is another window's, or nobody's.
void frmLstUtenti::endRecognition()
{
    if (!tmrRicOn.isActive())
        return;
    tmrRicOn.stop();
    cmdRicTx->setEnabled(true);
}

void frmLstUtenti::dbcmb_Change(const UserCombo *chosen, UserCombo *other, QString User::*otherName)
{
    const std::optional<qint64> user = chosen->shown();
    if (!user || !commitCell() || !m_register.users().moveToRow(*user))
        return;
    if (!(m_register.current().*otherName).isEmpty())
        other->showEntry(user);
    showCurrent();
}

// Lists in files -----------------------------------------------------------------------------------------------------

std::optional<UserRows> frmLstUtenti::rows()
{
    if (!m_isLoaded || !commitCell())
        return {};
    return UserRows(m_register.users());
}

void frmLstUtenti::importFrom(const QString &file)
{
    if (m_isLoaded && !isEnabled())
        return;
    m_imported = file;
    if (m_isLoaded)
        openImport();
}

void frmLstUtenti::openImport()
{
    const QString file = std::exchange(m_imported, {});
    if (!commitCell())
        return;
    auto *objImport = new frmImport(m_texts, m_messages, m_register, file);
    connect(objImport, &frmImport::Chiudi, this, &frmLstUtenti::objImport_Chiudi);
    openOver(objImport, [](QRect own, QSize) { return own.topLeft() + QPoint(pixels(300), pixels(300)); });
}

/// @param said  what has been imported, "" = nothing
void frmLstUtenti::objImport_Chiudi(const QString &said)
{
    enable();
    if (said.isEmpty())
        return;
    showRows();
    fillCombos();
    lblMessage->setText(said);
}

// Reports ------------------------------------------------------------------------------------------------------------

void frmLstUtenti::cmdDoppioni_Click()
{
    if (!commitCell() || isEmpty())
        return;
    endRecognition();
    auto listing = std::make_unique<DuplicateReport>(m_register.all(), m_archives.folder(), m_texts[Text::CodiceReale],
                                                     m_texts[Text::CodiceTroncatoReport]);
    const DuplicateReport &running = *listing;
    setEnabled(false);
    m_runner.run(std::move(listing), TaskRunner::Notice{[this] { return m_texts[Text::RicercaDoppioni]; }},
                 [this, &running](const Result<void> &listed) {
                     if (listed)
                         return duplicatesListed(running);
                     enable();
                     showFault(this, OwnText::FileNotWritten, DuplicateReport::fileName(), listed.fault());
                 });
}

void frmLstUtenti::duplicatesListed(const DuplicateReport &duplicates)
{
    if (!duplicates.isFound()) {
        enable();
        return m_messages.show(this, Icon::Information, m_texts[Text::NessunDoppioneTrovato]);
    }
    auto *objRepDoppioni = new frmRepDoppioni(m_texts, duplicates.text());
    connect(objRepDoppioni, &frmRepDoppioni::Chiudi, this, &frmLstUtenti::objRepDoppioni_Chiudi);
    connect(objRepDoppioni, &frmRepDoppioni::Stampa, this,
            [this, objRepDoppioni](const QString &shown) { Q_EMIT StampaDoppioni(objRepDoppioni, shown); });
    openOver(objRepDoppioni, [](QRect own, QSize child) {
        return QPoint(own.left() + (own.width() - child.width()) / 2, own.top() + pixels(200));
    });
}

void frmLstUtenti::objRepDoppioni_Chiudi()
{
    enable();
}

void frmLstUtenti::cmdStampa_Click()
{
    if (commitCell() && !isEmpty())
        Q_EMIT Stampa();
}

void frmLstUtenti::printed()
{
    if (!isEnabled() || !commitCell())
        return;
    m_register.users().moveFirst();
    showCurrent();
}

/// Disabled, the window has lost the keyboard; it takes it back where no other window has got it meanwhile.
void frmLstUtenti::enable()
{
    setEnabled(true);
    const QWidget *keyboard = window()->focusWidget();
    if (!keyboard || keyboard == parentWidget())
        takeKeyboard();
}

void frmLstUtenti::stopAll()
{
    tmrLoad.stop();
    tmrRicOn.stop();
    m_runner.stop();
    m_work.reset();
}
