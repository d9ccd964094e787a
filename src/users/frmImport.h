#pragma once

#include "platform/TextFile.h"
#include "users/UserRegister.h"
#include "widgets/ChildWindow.h"
#include "widgets/RowsModel.h"
#include "widgets/TaskRunner.h"

class Fields;
class Grid;
class Messages;
class QCheckBox;
class QComboBox;
class QLabel;
class QProgressBar;
class Texts;

/// Shows what a list of users would change in the register, line by line, and brings it in when the operator wants so.
/// What has been recognised of the file he can change; the dry run follows.
class frmImport : public ChildWindow
{
    Q_OBJECT

public:
    /// @param users  the list is brought into its working copy, which must stay until this window has unloaded; like
    /// the texts and the messages, must outlive it
    /// @param file   absolute path
    frmImport(const Texts &texts, Messages &messages, UserRegister &users, const QString &file,
              QWidget *parent = nullptr);
    ~frmImport() override;

    /// Begins to read the file. Where that cannot be read the window closes, once the operator has been told.
    bool open() override;
    void setCaptions() override;

Q_SIGNALS:
    /// Not told when the program itself closes the window. @param said  what has been imported, "" = nothing
    void Chiudi(const QString &said);

protected:
    bool canClose() override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void build();
    QList<RowsModel::Column> columns() const;

    void fileRead(const Result<void> &read);
    void formatChanged();
    void chkHeader_Change();
    void cmdSaveRefused_Click();
    void cmdImport_Click();
    void cmdAnnulla_Click();

    void showFormat(const ImportFormat &format);
    void fillColumns(const ImportFormat &format);
    void nameColumns(QComboBox *box);
    ImportChoices choices() const;
    void check();
    void checked(const Result<void> &result);
    void showLines();
    void imported(const Result<void> &result);
    void saveRefused(const QString &file);
    void setReady(bool isChecked);
    void end(const QString &said);

    const Texts &m_texts;
    Messages &m_messages;
    UserRegister &m_users;
    const QString m_path;
    TextFile m_file;
    std::unique_ptr<ImportCheck> m_check;
    std::unique_ptr<Task> m_import;
    TaskRunner m_runner;
    bool m_isChecked = false; ///< the dry run has come to its end
    bool m_isShowing = false; ///< the controls change by themselves
    bool m_hasUnloaded = false;

    Fields *fraFormat;
    QLabel *lblSeparator;
    QComboBox *cmbSeparator;
    QLabel *lblEncoding;
    QComboBox *cmbEncoding;
    std::array<QLabel *, ImportFieldCount> lblColumn{};
    std::array<QComboBox *, ImportFieldCount> cmbColumn{};
    QCheckBox *chkHeader;
    QLabel *lblExisting;
    QComboBox *cmbExisting;
    QCheckBox *chkShorten;
    QLabel *lblCounts;
    QCheckBox *chkOnlyRefused;
    Grid *dbgrdRighe;
    RowsModel *m_rows = nullptr;
    QProgressBar *Bar;
    QPushButton *cmdSaveRefused;
    QPushButton *cmdImport;
    QPushButton *cmdAnnulla;
};
