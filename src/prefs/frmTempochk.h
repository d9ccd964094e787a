#pragma once

#include "widgets/ChildWindow.h"

class Messages;
class QCheckBox;
class QLabel;
class QLineEdit;
class Settings;
class Texts;

/// Interval of the automatic checks of the interface.
class frmTempochk : public ChildWindow
{
    Q_OBJECT

public:
    /// All must outlive this window. It writes the setting to the file; the value in memory belongs to whoever checks.
    frmTempochk(const Texts &texts, Settings &settings, Messages &messages, QWidget *parent = nullptr);
    void setCaptions() override;

Q_SIGNALS:
    /// @param minutes  1 to 1440, 0 = no automatic checks any more; nothing when cancelled
    void ModificaMin(std::optional<int> minutes);

private:
    void chkAutomatico_Click();
    void txtMinuti_Change();
    void cmdOk_Click();
    void cmdAnnulla_Click();
    void selectMinuti();

    const Texts &m_texts;
    Settings &m_settings;
    Messages &m_messages;

    QCheckBox *chkAutomatico;
    QLabel *lblCheck;
    QLineEdit *txtMinuti;
    QLabel *lblMinuti;
    QPushButton *cmdOk;
    QPushButton *cmdAnnulla;
};
