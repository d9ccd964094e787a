#include "events/CoverageLine.h"

#include "widgets/ChildWindow.h"

#include <QEvent>

CoverageLine::CoverageLine(const Texts &texts, Journal &journal, ChildWindow *window)
    : m_texts(texts), m_journal(journal), m_runner(new TaskRunner(window))
{
    setObjectName(QStringLiteral("cmdCoverage"));
    setFlat(true);
    setAutoDefault(false);
    setCursor(Qt::PointingHandCursor);
    hide();
    look();
    connect(this, &QPushButton::clicked, this, [this] { Q_EMIT journalWanted(m_hours.firstDay, m_hours.lastDay); });
}

void CoverageLine::forget()
{
    m_runner->stop();
    m_reading.reset();
    m_missing = {};
    hide();
}

void CoverageLine::find(const DailyHours &hours, const Moment &until, std::function<void()> ended)
{
    forget();
    m_hours = hours;
    m_reading = m_journal.read(hours, until);
    const auto done = [this, ended = std::move(ended)](const Result<void> & /*never fails*/) {
        const std::unique_ptr<CoverageReading> reading = std::move(m_reading);
        say(reading->spans());
        ended();
    };
    if (const auto atOnce = m_runner->runAtOnce(*m_reading, done))
        done(*atOnce);
}

void CoverageLine::say(const QList<CoveredSpan> &spans)
{
    m_missing = missingOf(spans);
    setCaptions();
    setVisible(!spans.isEmpty());
}

void CoverageLine::changeEvent(QEvent *event)
{
    QPushButton::changeEvent(event);
    if (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ApplicationFontChange)
        look();
}

/// As a link: what it is can be seen without a frame.
void CoverageLine::look()
{
    QFont underlined;
    underlined.setUnderline(true);
    setFont(underlined);
    QPalette coloured;
    coloured.setColor(QPalette::ButtonText, coloured.color(QPalette::Link));
    setPalette(coloured);
}
