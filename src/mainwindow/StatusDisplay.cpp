#include "mainwindow/StatusDisplay.h"

#include "startup/Version.h"
#include "texts/DateTimeText.h"
#include "texts/OwnText.h"
#include "widgets/StatusPanels.h"

#include <QApplication>
#include <QMainWindow>

namespace {

constexpr int flashMilliseconds = 300;

enum Panel { Date = 1, Time = 2, TimeProgrammePanel = 3, LinkWords = 5, LinkLight = 6 };

const char *lightFile(LinkState::Light light)
{
    switch (light) {
    case LinkState::Light::Grey:
        return "Led_G.bmp";
    case LinkState::Light::Green:
        return "Led_V.bmp";
    case LinkState::Light::Red:
        break;
    }
    return "Led_R.bmp";
}

} // namespace

StatusDisplay::StatusDisplay(Program &program, QMainWindow &window)
    : m_program(program),
      m_window(window),
      StatusBar1(new StatusPanels(QStringLiteral("StatusBar1"), {2500, 700, 640, 1500, 0, 400}, &window)),
      tmrFlash(new QTimer(&window))
{
    window.setStatusBar(StatusBar1);
    tmrFlash->setObjectName(QStringLiteral("tmrFlash"));
    tmrFlash->setInterval(flashMilliseconds);
    connect(tmrFlash, &QTimer::timeout, this, &StatusDisplay::tmrFlash_Timer);
    connect(&program, &Program::refreshing, this, &StatusDisplay::showClock);
    connect(&program.timeProgramme(), &TimeProgramme::applied, this, &StatusDisplay::showTime);
    connect(&program.timeProgramme(), &TimeProgramme::suspended, this,
            [this] { showTime(m_program.timeProgramme().isEnabled()); });
    connect(&program.log(), &EventLog::waitingChanged, this, &StatusDisplay::showWaiting);
    connect(&program.link(), &LinkMonitor::stateChanged, this, &StatusDisplay::showLink);
}

void StatusDisplay::applyTexts()
{
    m_window.setWindowTitle(caption());
    showLink();
    showClock();
    showWaiting();
    showTime(m_program.timeProgramme().isEnabled());
}

QString StatusDisplay::caption() const
{
    return m_program.texts()[Text::InterfacciaMultiprotocollo] + QStringLiteral(" - V") + programVersion();
}

void StatusDisplay::showClock()
{
    const QDateTime now = m_program.clock().now();
    StatusBar1->showText(Date, DataEstesa(now.date(), m_program.texts()), DataBarre(m_program.clock().date()));
    StatusBar1->showText(Time, now.toString(QStringLiteral("HH:mm")));
}

void StatusDisplay::showTime(bool isEnabled)
{
    const Texts &texts = m_program.texts();
    const std::optional<bool> level = m_program.serial().rtsLevel();
    const OwnText line = !level ? OwnText::RtsNotKnown : *level ? OwnText::RtsAsserted : OwnText::RtsReleased;
    const QString state =
        texts[Text::Interfaccia] + QLatin1Char(' ') + texts[isEnabled ? Text::Abilitata : Text::Disabilitata].toLower();
    const QString now = state + QStringLiteral(" (") + texts[line] + QLatin1Char(')');
    const QString until = m_program.timeProgramme().untilWhen(texts);
    StatusBar1->showPicture(TimeProgrammePanel, m_program.picture(isEnabled ? "Time_En.bmp" : "Time_Dis.bmp"),
                            until.isEmpty() ? now : now + QStringLiteral(". ") + until, state);
}

void StatusDisplay::showLink()
{
    const Texts &texts = m_program.texts();
    const LinkState state = m_program.link().state();
    const std::optional<Text> panel = state.panel();
    StatusBar1->showText(LinkWords, panel ? texts[*panel].toUpper().trimmed() : QString());
    StatusBar1->showPicture(LinkLight, m_program.picture(lightFile(state.light())),
                            texts.sentence({state.words(), {}, {}}).trimmed());
    if (state.flashes() == tmrFlash->isActive())
        return;
    if (state.flashes()) {
        tmrFlash->start();
        return;
    }
    tmrFlash->stop();
    StatusBar1->invert(LinkWords, false);
    m_window.setWindowTitle(caption());
}

void StatusDisplay::setRegisterWait(std::optional<Message> why)
{
    m_registerWait = std::move(why);
    showWaiting();
}

void StatusDisplay::showWaiting()
{
    // Why events wait says more than how many do.
    const std::optional<Message> remark = m_registerWait ? m_registerWait : m_program.log().waits();
    StatusBar1->showRemark(remark ? m_program.texts().sentence(*remark) : QString());
}

void StatusDisplay::tmrFlash_Timer()
{
    QApplication::alert(&m_window);
    const bool inverted = !StatusBar1->isInverted(LinkWords);
    StatusBar1->invert(LinkWords, inverted);
    m_window.setWindowTitle(inverted ? QStringLiteral("\u25CF ") + caption() : caption());
    Q_EMIT flashed();
}
