#pragma once

#include "link/PortTest.h"
#include "texts/Texts.h"
#include "widgets/ChildWindow.h"
#include "widgets/Messages.h"

#include <QPointer>
#include <QTimer>

#include <array>

class QGroupBox;
class QLabel;
class QRadioButton;

/// The operator chooses the port that the interface is connected to, and tries it before.
///
/// It searches the ports soon after it has opened, and is disabled until then. The program's own port must be closed
/// while it is open.
class frmImpCom : public ChildWindow
{
    Q_OBJECT

public:
    enum class Esito { Chosen, Cancelled };

    /// All must outlive the window.
    frmImpCom(const Texts &texts, Messages &messages, PortTest &test, QWidget *parent = nullptr);

    /// The window cannot be cancelled, because no port has ever been chosen. Call before the window is shown.
    void setPrima(bool first);
    /// Number of the port that is chosen when it is available; others choose none. Call before the window is shown.
    void setConfiguredPort(int port) { m_configuredPort = port; }

    QPoint place(QSize area, QSize own) const override;
    void setCaptions() override;

Q_SIGNALS:
    /// @param porta  its number; 0 when cancelled
    void Chiudi(int porta, frmImpCom::Esito esito);
    /// There is no port to choose, and the operator wants to end the program. The window stays open.
    void FineProgramma();

protected:
    bool canClose() override;

private:
    void cmdProva_Click();
    void cmdOk_Click();
    void cmdAnnulla_Click();
    void tmrLoad_Timer();
    void tested(bool found);
    void showDevices();
    void noPortAvailable();
    int chosenPort();
    void showTest(int port);
    void showTestedPort();
    void leave(int port, Esito outcome);

    const Texts &m_texts;
    Messages &m_messages;
    PortTest &m_test;
    QGroupBox *fraPorte;
    std::array<QRadioButton *, PortTest::Ports> Com;
    QLabel *lblProva;
    QPushButton *cmdProva;
    QPushButton *cmdOk;
    QPushButton *cmdAnnulla;
    QTimer tmrLoad;
    QPointer<QWidget> m_hadFocus; ///< when the test began
    int m_configuredPort = 0;
    int m_testedPort = 0;      ///< on which a test runs; 0 = none
    bool m_isSearched = false; ///< the ports have been
    bool m_prima = false;
};
