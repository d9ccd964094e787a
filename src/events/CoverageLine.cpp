#include "events/CoverageLine.h"

#include "widgets/ChildWindow.h"
#include "widgets/Forms.h"

#include <QEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

namespace {

constexpr int leastContrast = 64; ///< of 255 grey levels

}

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

void CoverageLine::setCaptions()
{
    const int beside = 2 * fontMetrics().height(); // of the words
    setText(inLines(coverageWords(m_missing, m_texts), fontMetrics(), m_width - beside));
}

void CoverageLine::fit(int width)
{
    m_width = width;
    setCaptions();
}

/// A flat button shows nothing of having the keyboard.
void CoverageLine::paintEvent(QPaintEvent *event)
{
    QPushButton::paintEvent(event);
    if (!hasFocus())
        return;
    QStylePainter painter(this);
    QStyleOptionFocusRect frame;
    frame.initFrom(this);
    frame.state |= QStyle::State_KeyboardFocusChange;
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, frame);
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
    // A dark desktop may leave the colour of links as dark as it is on white.
    QColor link = coloured.color(QPalette::Link);
    if (qAbs(qGray(link.rgb()) - qGray(coloured.color(QPalette::Window).rgb())) < leastContrast)
        link = coloured.color(QPalette::WindowText);
    coloured.setColor(QPalette::ButtonText, link);
    setPalette(coloured);
}
