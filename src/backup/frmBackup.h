#pragma once

#include "platform/Result.h"
#include "texts/Texts.h"
#include "widgets/ChildWindow.h"

class DailyBackup;
class Messages;
class QCheckBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTimeEdit;

/// The backup copy of the program folder: where to, at once or every day, and how far the one that runs has come. It
/// goes on when the window closes.
class frmBackup : public ChildWindow
{
    Q_OBJECT

public:
    /// All must outlive this window.
    frmBackup(const Texts &texts, DailyBackup &backup, Messages &messages, QWidget *parent = nullptr);
    void setCaptions() override;

protected:
    bool canClose() override;

private:
    void cmdFolder_Click();
    void cmdNow_Click();
    void cmdStop_Click();
    void cmdChiudi_Click();
    void showState();
    void tell(std::optional<Message> state);
    void showEnd(const Result<void> &result, int copied);
    QString folder() const;
    std::optional<QString> faultOfPlan() const;
    void store();
    void refuse(const QString &text);
    void chooseFolder();

    const Texts &m_texts;
    DailyBackup &m_backup;
    Messages &m_messages;

    std::optional<Message> m_state; ///< what lblState says
    QLabel *lblFolder;
    QLineEdit *txtFolder;
    QPushButton *cmdFolder;
    QCheckBox *chkDaily;
    QTimeEdit *txtTime;
    QLabel *lblLast;
    QLabel *lblState;
    QProgressBar *prgBackup;
    QPushButton *cmdNow;
    QPushButton *cmdStop;
    QPushButton *cmdChiudi;
};
