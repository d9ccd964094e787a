#include "link/frmImpCom.h"

#include "texts/OwnText.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTextDocument>

#include <algorithm>

namespace {

QString deviceWords(const SerialDevice &device, const Texts &texts)
{
    QStringList words;
    switch (device.kind) {
    case SerialDevice::Kind::Missing:
        words = {texts[OwnText::ReasonNotFound]};
        break;
    case SerialDevice::Kind::BuiltIn:
        words = {texts[OwnText::PortBuiltIn]};
        break;
    case SerialDevice::Kind::UsbAdapter:
        words = {texts[OwnText::PortUsbAdapter], device.maker};
        if (!device.serialNumber.isEmpty())
            words.append(texts.sentence({OwnText::PortSerialNumber, {device.serialNumber}, {}}));
        break;
    case SerialDevice::Kind::Other:
        return device.path;
    }
    words.removeAll(QString());
    return words.join(QStringLiteral(", ")) + QStringLiteral(" (") + device.path + QLatin1Char(')');
}

} // namespace

frmImpCom::frmImpCom(const Texts &texts, Messages &messages, PortTest &test, QWidget *parent)
    : ChildWindow(QStringLiteral("frmImpCom"), parent),
      m_texts(texts),
      m_messages(messages),
      m_test(test),
      fraPorte(new QGroupBox),
      lblProva(new QLabel),
      cmdProva(new QPushButton),
      cmdOk(new QPushButton),
      cmdAnnulla(new QPushButton)
{
    constexpr int rows = PortTest::Ports / 2;
    auto *ports = new QGridLayout(fraPorte);
    for (int i = 0; i < PortTest::Ports; ++i) {
        auto *option = new QRadioButton;
        option->setObjectName(QStringLiteral("Com(%1)").arg(i));
        option->setEnabled(false);
        ports->addWidget(option, i % rows, i / rows);
        Com[static_cast<size_t>(i)] = option;
    }
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdProva);
    buttons->addStretch();
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdAnnulla);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(fraPorte);
    layout->addWidget(lblProva);
    layout->addStretch();
    layout->addLayout(buttons);

    fraPorte->setObjectName(QStringLiteral("fraPorte"));
    lblProva->setObjectName(QStringLiteral("lblProva"));
    cmdProva->setObjectName(QStringLiteral("cmdProva"));
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));
    tmrLoad.setObjectName(QStringLiteral("tmrLoad"));
    setKeys(cmdOk, cmdAnnulla);
    frmImpCom::setCaptions();
    setEnabled(false);

    connect(cmdProva, &QPushButton::clicked, this, &frmImpCom::cmdProva_Click);
    connect(cmdOk, &QPushButton::clicked, this, &frmImpCom::cmdOk_Click);
    connect(cmdAnnulla, &QPushButton::clicked, this, &frmImpCom::cmdAnnulla_Click);
    connect(&tmrLoad, &QTimer::timeout, this, &frmImpCom::tmrLoad_Timer);
    connect(&m_test, &PortTest::tested, this, &frmImpCom::tested);
    connect(this, &ChildWindow::unloaded, &m_test, &PortTest::stop);
    tmrLoad.setSingleShot(true);
    tmrLoad.start(50);
}

void frmImpCom::setPrima(bool first)
{
    m_prima = first;
    cmdAnnulla->setEnabled(!first);
}

QPoint frmImpCom::place(QSize area, QSize own) const
{
    return {(area.width() - own.width()) / 3, (area.height() - own.height()) / 4};
}

bool frmImpCom::canClose()
{
    if (m_prima) {
        refuseClose();
        return false;
    }
    leave(0, Esito::Cancelled);
    return true;
}

void frmImpCom::setCaptions()
{
    setWindowTitle(m_texts[Text::ImpostazioneSeriale]);
    fraPorte->setTitle(m_texts[Text::SelezionareUnaPortaCom]);
    for (int i = 0; i < PortTest::Ports; ++i)
        Com[static_cast<size_t>(i)]->setText(QStringLiteral("COM%1").arg(i + 1));
    cmdProva->setText(m_texts[Text::CmdProvaConnessione]);
    cmdOk->setText(m_texts[Text::CmdOk]);
    cmdAnnulla->setText(m_texts[Text::CmdAnnulla]);
    lblProva->setMinimumWidth(fontMetrics().horizontalAdvance(m_texts[OwnText::PortTestRuns].arg(PortTest::Ports)));
    showTestedPort();
    if (m_isSearched)
        showDevices();
}

void frmImpCom::cmdProva_Click()
{
    const int port = chosenPort();
    if (port == 0)
        return;
    showTest(port);
    m_test.test(port);
}

void frmImpCom::cmdOk_Click()
{
    const int port = chosenPort();
    if (port == 0)
        return;
    leave(port, Esito::Chosen);
    unload();
}

void frmImpCom::cmdAnnulla_Click()
{
    leave(0, Esito::Cancelled);
    unload();
}

void frmImpCom::tmrLoad_Timer()
{
    const QList<int> available = m_test.available();
    for (int port : available)
        Com.at(static_cast<size_t>(port - 1))->setEnabled(true);
    m_isSearched = true;
    showDevices();
    setEnabled(true);

    if (available.isEmpty() && m_prima) {
        noPortAvailable();
        return;
    }
    const int preselected = m_prima ? available.first() : m_configuredPort;
    if (available.contains(preselected)) {
        QRadioButton *option = Com.at(static_cast<size_t>(preselected - 1));
        option->setChecked(true);
        option->setFocus();
    } else if (!available.isEmpty()) {
        Com.at(static_cast<size_t>(available.first() - 1))->setFocus();
    } else {
        cmdAnnulla->setFocus();
    }
}

void frmImpCom::tested(bool found)
{
    showTest(0);
    if (found)
        m_messages.show(this, Icon::Information, m_texts[Text::ConnessioneEffettuata]);
    else
        m_messages.show(this, Icon::Exclamation, m_texts[Text::ImpossibileStabilireCollegamento]);
}

/// The captions are the ports' numbers alone: what stands behind each is told beside them.
void frmImpCom::showDevices()
{
    for (int port = 1; port <= PortTest::Ports; ++port) {
        QRadioButton *option = Com.at(static_cast<size_t>(port - 1));
        const QString words = option->text() + m_texts[OwnText::Colon] + deviceWords(m_test.describe(port), m_texts);
        // A device may call itself anything: none of it is markup.
        option->setToolTip(Qt::mightBeRichText(words) ? words.toHtmlEscaped() : words);
        option->setAccessibleDescription(words);
    }
}

void frmImpCom::noPortAvailable()
{
    // Without a port there is nothing to choose, and without a choice no way out of a first start.
    m_messages.choose(this, m_texts[OwnText::NoPortAvailable], m_texts[OwnText::ButtonSearchAgain],
                      m_texts[OwnText::ButtonEnd], [this](bool end) {
                          if (end)
                              Q_EMIT FineProgramma();
                          else
                              tmrLoad_Timer();
                      });
}

/// Number of the chosen port; 0 without one, and the operator is told so.
int frmImpCom::chosenPort()
{
    const auto chosen = std::find_if(Com.begin(), Com.end(), [](const QRadioButton *o) { return o->isChecked(); });
    if (chosen != Com.end())
        return static_cast<int>(chosen - Com.begin()) + 1;
    m_messages.show(this, Icon::Exclamation, m_texts[Text::SelezionareUnaPortaCom]);
    return 0;
}

/// @param port  on which a test runs; 0 = none
void frmImpCom::showTest(int port)
{
    const bool runs = port != 0;
    m_testedPort = port;
    if (runs)
        m_hadFocus = focusWidget();
    // The result names no port: it must be the chosen one's.
    fraPorte->setEnabled(!runs);
    cmdProva->setEnabled(!runs);
    cmdOk->setEnabled(!runs);
    showTestedPort();
    // The keyboard waits at the window: left to itself it would go on to the cancel button, and the next Enter with it.
    if (runs)
        setFocus();
    else if (m_hadFocus)
        m_hadFocus->setFocus();
}

void frmImpCom::showTestedPort()
{
    lblProva->setText(m_testedPort != 0 ? m_texts[OwnText::PortTestRuns].arg(m_testedPort) : QString());
}

/// The window is about to close: its opener opens the port again.
void frmImpCom::leave(int port, Esito outcome)
{
    m_test.stop();
    Q_EMIT Chiudi(port, outcome);
}
