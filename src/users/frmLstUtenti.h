#pragma once

#include "link/EventRecord.h"
#include "users/DuplicateReport.h"
#include "users/RecognitionWait.h"
#include "users/UserRegister.h"
#include "users/frmAddCod.h"
#include "users/frmInsCodice.h"
#include "widgets/ChildWindow.h"
#include "widgets/TaskRunner.h"

#include <QPointer>
#include <QTimer>

class CellEditor;
class Grid;
class QGroupBox;
class QLabel;
class RecordSetModel;
class Messages;
class UserCombo;

/// The register of users: lists them all, and lets the operator add, change, find and delete them. It works on a copy;
/// what the rest of the program knows changes with a save alone.
class frmLstUtenti : public ChildWindow
{
    Q_OBJECT

public:
    enum class Esito { Saved = 1, NotSaved = 2 };

    /// What the window has to know about the interface.
    struct Interface {
        std::function<Protocol()> protocol; ///< the one in force
        bool isOffLine = false;
    };

    /// @param texts  like the next two, must outlive this window
    frmLstUtenti(const Texts &texts, Messages &messages, ArchiveStore &archives, Interface interface,
                 QWidget *parent = nullptr);
    ~frmLstUtenti() override;

    /// Opens with the users of another register, as a change that is not saved yet. To be called before open().
    /// @param file  absolute path; the title names it, with its day and time
    void restoreFrom(const QString &file);

    /// A record has come from the interface: it is looked for while the operator wants a code to be recognised.
    void recordReceived(const EventRecord &record);

    /// Makes the working copy; the users are shown a moment later.
    bool open() override;

    QPoint place(QSize area, QSize own) const override;

    /// Shows what a file would change in the working copy, once that is there. While this window is disabled by a box
    /// of its, nothing happens. @param file  absolute path
    void importFrom(const QString &file);

    /// The users as they are at this moment, once they are shown; none before, and where the cell that is being
    /// edited cannot be stored.
    std::optional<UserRows> rows();

    /// The users as they are at this moment; only after open().
    QList<User> users() { return m_register.all(); }
    /// The list is on its way to the printer: the first user is the current one, unless another window is waited for.
    void printed();
    void setCaptions() override;
    /// What the operator has done to them so far.
    const UserChanges &changes() const { return m_register.changes(); }

Q_SIGNALS:
    /// The window has closed and its working copy is gone.
    void Chiudi(frmLstUtenti::Esito esito);
    /// A window to be opened beside this one, which is disabled until it has closed.
    void openChild(ChildWindow *window);
    /// The operator wants the list on paper; there is at least one user.
    void Stampa();
    /// The operator wants the report of duplicates on paper, which @p window shows.
    void StampaDoppioni(ChildWindow *window, const QString &report);

protected:
    bool canClose() override;

private:
    void build();
    QString caption() const;

    void tmrLoad_Timer();
    void tmrRicOn_Timer();
    void dbgrdDati_Change(bool wasCut);
    void dbgrdDati_Update(int row, int column, const QString &text);
    void cmdNuovo_Click();
    void cmdModifica_Click();
    void cmdElimina_Click();
    void cmdPrecod_Click();
    void cmdRicTx_Click();
    void cmdDoppioni_Click();
    void cmdStampa_Click();
    void cmdSalva_Click();
    void cmdChiudi_Click();
    void dbcmb_Change(const UserCombo *chosen, UserCombo *other, QString User::*otherName);

    void openCode(std::optional<QString> CodMod, qint64 user);
    void objInsCodice_Chiudi(qint64 user, const QString &Codice, CodeType Tipo, frmInsCodice::Esito esito);
    void objAddCod_Chiudi(frmAddCod::Esito esito);
    void objRepDoppioni_Chiudi();
    void openImport();
    void objImport_Chiudi(const QString &said);

    bool commitCell();
    bool isEmpty();
    void openOver(ChildWindow *window, std::function<QPoint(QRect own, QSize child)> place);
    bool usersRead(const Result<void> &read);
    void enable();
    void loaded(const Result<void> &result);
    void duplicatesListed(const DuplicateReport &duplicates);
    void endRecognition();
    void stopAll();
    void fillCombos();
    void showRows();
    void showCurrent();
    void save(bool isClosing);
    void saved(const Result<void> &result, bool isClosing);
    void end(Esito outcome);
    void showFault(QWidget *over, OwnText text, const QString &subject, const Fault &fault);

    const Texts &m_texts;
    Messages &m_messages;
    ArchiveStore &m_archives;
    UserRegister m_register;
    QString m_restored; ///< the file that the users come from, "" = the register itself
    QString m_imported; ///< a file to be imported from when the users are there
    bool m_isLoaded = false;
    Esito m_outcome = Esito::NotSaved;

    std::unique_ptr<Task> m_work; ///< reads the register, or saves it
    TaskRunner m_runner;
    QPointer<ChildWindow> m_child;
    bool m_isAsking = false; ///< whether to save at the close
    bool m_isStored = true;  ///< the last change of a cell
    RecognitionWait m_recognition;
    std::optional<EventRecord> m_received; ///< latest one since that has begun
    QTimer tmrLoad{this};
    QTimer tmrRicOn{this};

    Grid *dbgrdDati;
    RecordSetModel *rsDati;
    CellEditor *m_cell;
    QLabel *lblMessage;
    QGroupBox *FrameRicerca;
    QLabel *lblCognome;
    UserCombo *dbcmbCognome;
    QLabel *lblNome;
    UserCombo *dbcmbNome;
    QPushButton *cmdNuovo;
    QPushButton *cmdModifica;
    QPushButton *cmdElimina;
    QPushButton *cmdPrecod;
    QPushButton *cmdRicTx;
    QPushButton *cmdDoppioni;
    QPushButton *cmdStampa;
    QPushButton *cmdSalva;
    QPushButton *cmdChiudi;
};
