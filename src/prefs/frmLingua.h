#pragma once

#include "widgets/ChildWindow.h"

class Messages;
class QButtonGroup;
class QLabel;
class Settings;
class Texts;

/// Choice of the language. The table of texts changes at once.
class frmLingua : public ChildWindow
{
    Q_OBJECT

public:
    /// All must outlive this window.
    frmLingua(Texts &texts, Settings &settings, Messages &messages, QWidget *parent = nullptr);
    void setCaptions() override;

Q_SIGNALS:
    /// A language was chosen and the table of texts speaks it.
    void LinguaCambiata();

private:
    void cmdOk_Click();

    Texts &m_texts;
    Settings &m_settings;
    Messages &m_messages;

    QLabel *lblLingua;
    QButtonGroup *optLingua; ///< by number of the language
    QPushButton *cmdOk;
    QPushButton *cmdAnnulla;
};
