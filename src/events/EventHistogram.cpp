#include "events/EventHistogram.h"

#include "texts/DateTimeText.h"
#include "texts/OwnText.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollArea>
#include <QToolButton>
#include <QToolTip>
#include <QVBoxLayout>
#include <QtMath>

namespace {

// Height, of which a line stands above the bars and one below.
constexpr int usualLines = 7;
constexpr int linesOfLeast = 5;
constexpr int leastBarWidth = 3; ///< pixels; where more bars would be thinner some of them become one
constexpr double frame = 2;

} // namespace

class EventHistogram::Bars : public QWidget
{
public:
    explicit Bars(EventHistogram &owner) : QWidget(&owner), m_owner(owner)
    {
        setObjectName(QStringLiteral("Istogramma"));
        setFocusPolicy(Qt::StrongFocus);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
    }

    /// Makes the bars anew for the present width.
    void remake()
    {
        m_bars = m_owner.m_counts.bars(width() / leastBarWidth);
        m_highest = 1;
        for (const EventCounts::Bar &bar : std::as_const(m_bars))
            m_highest = qMax(m_highest, bar.enabled + bar.disabled);
        m_current = 0;
        while (m_current < m_bars.size() && m_bars[m_current].firstRow < 0)
            ++m_current;
        describe();
        update();
    }
    void describe() { setAccessibleDescription(m_current < m_bars.size() ? words(m_bars[m_current]) : QString()); }

    QSize sizeHint() const override { return {0, usualLines * fontMetrics().height()}; }
    QSize minimumSizeHint() const override { return {0, linesOfLeast * fontMetrics().height()}; }

protected:
    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::ToolTip)
            return QWidget::event(event);
        const auto *help = static_cast<QHelpEvent *>(event);
        if (const qsizetype bar = barAt(help->pos().x()); bar >= 0)
            QToolTip::showText(help->globalPos(), words(m_bars[bar]), this, barRect(bar).toAlignedRect());
        else
            QToolTip::hideText();
        return true;
    }

    void mousePressEvent(QMouseEvent *event) override
    {
        const qsizetype bar = barAt(event->position().x());
        if (event->button() == Qt::LeftButton && bar >= 0) {
            moveTo(bar);
            choose();
        }
    }

    void keyPressEvent(QKeyEvent *event) override
    {
        const bool toTheRight = event->key() == Qt::Key_Right;
        if (toTheRight || event->key() == Qt::Key_Left) {
            const qsizetype step = toTheRight ? 1 : -1;
            for (qsizetype bar = m_current + step; bar >= 0 && bar < m_bars.size(); bar += step) {
                if (m_bars[bar].firstRow >= 0) {
                    moveTo(bar);
                    QToolTip::showText(mapToGlobal(barRect(bar).bottomLeft().toPoint()), words(m_bars[bar]), this);
                    break;
                }
            }
        } else if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
            choose();
        } else {
            QWidget::keyPressEvent(event);
        }
    }

    void focusInEvent(QFocusEvent *event) override
    {
        QWidget::focusInEvent(event);
        update();
    }

    void resizeEvent(QResizeEvent *event) override
    {
        QWidget::resizeEvent(event);
        remake();
    }

    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        const QColor text = palette().color(QPalette::WindowText);
        const QRectF field = area();
        painter.fillRect(field, palette().color(QPalette::Base));
        painter.setPen(text);
        painter.drawText(0, fontMetrics().ascent(), m_bars.isEmpty() ? QString() : QString::number(m_highest));
        paintLegend(painter);
        paintCaptions(painter);
        for (qsizetype i = 0; i < m_bars.size(); ++i) {
            const QRectF bar = barRect(i);
            const double unit = field.height() / static_cast<double>(m_highest);
            const double enabled = unit * static_cast<double>(m_bars[i].enabled);
            const double disabled = unit * static_cast<double>(m_bars[i].disabled);
            fill(painter, {bar.left(), field.bottom() - enabled, bar.width(), enabled}, true);
            fill(painter, {bar.left(), field.bottom() - enabled - disabled, bar.width(), disabled}, false);
        }
        painter.setBrush(Qt::NoBrush);
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawRect(field);
        if (hasFocus() && m_current < m_bars.size()) {
            painter.setPen(QPen(text, frame));
            painter.drawRect(barRect(m_current));
        }
    }

private:
    QRectF area() const
    {
        const double line = fontMetrics().height();
        return {0, line + frame, width() - 1.0, height() - 2 * (line + frame)};
    }
    QRectF barRect(qsizetype bar) const
    {
        const double width = area().width() / static_cast<double>(m_bars.size());
        return {width * static_cast<double>(bar), area().top(), width, area().height()};
    }
    /// -1 where nothing was found.
    qsizetype barAt(double x) const
    {
        const auto bar = static_cast<qsizetype>(x * static_cast<double>(m_bars.size()) / qMax(1.0, area().width()));
        return bar >= 0 && bar < m_bars.size() && m_bars[bar].firstRow >= 0 ? bar : -1;
    }

    void moveTo(qsizetype bar)
    {
        m_current = bar;
        describe();
        update();
    }
    void choose()
    {
        if (m_current < m_bars.size() && m_bars[m_current].firstRow >= 0)
            Q_EMIT m_owner.rowChosen(m_bars[m_current].firstRow);
    }

    QString words(const EventCounts::Bar &bar) const
    {
        const Texts &texts = m_owner.m_texts;
        QString when = DataBarre(bar.from.date());
        if (m_owner.m_counts.isByHour())
            when += bar.from.toString(QStringLiteral(" HH:00")) + bar.to.toString(QStringLiteral(" - HH:59"));
        else if (bar.from != bar.to)
            when += QStringLiteral(" - ") + DataBarre(bar.to.date());
        return when + texts[OwnText::Colon] +
               texts.sentence(
                   {OwnText::EventCounts, {QString::number(bar.enabled), QString::number(bar.disabled)}, {}});
    }

    /// What is disabled is hatched, so that it needs no colour.
    void fill(QPainter &painter, const QRectF &part, bool isEnabled) const
    {
        if (part.height() <= 0)
            return;
        const QColor text = palette().color(QPalette::WindowText);
        painter.setPen(part.width() > 2 * leastBarWidth ? QPen(text, 1) : QPen(Qt::NoPen));
        painter.setBrush(isEnabled ? QBrush(palette().color(QPalette::Highlight)) : QBrush(text, Qt::BDiagPattern));
        painter.drawRect(part);
    }

    void paintLegend(QPainter &painter) const
    {
        const double size = fontMetrics().ascent();
        double right = width() - 1;
        for (const auto &[name, isEnabled] : {std::pair(Text::Disabilitato, false), std::pair(Text::Abilitato, true)}) {
            const QString words = m_owner.m_texts[name];
            right -= fontMetrics().horizontalAdvance(words);
            painter.setPen(palette().color(QPalette::WindowText));
            painter.drawText(QPointF(right, fontMetrics().ascent()), words);
            right -= size + frame;
            fill(painter, {right, 1, size, size - 1}, isEnabled);
            right -= size;
        }
    }

    /// Beginning, middle and end, below the bars.
    void paintCaptions(QPainter &painter) const
    {
        if (m_bars.isEmpty())
            return;
        const QRectF below(0, area().bottom() + frame, width() - 1, fontMetrics().height());
        const auto caption = [this](const QDateTime &moment, const QString &hour) {
            const QString day = DataBarre(moment.date());
            return m_owner.m_counts.isByHour() ? day + moment.toString(hour) : day;
        };
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(below, Qt::AlignLeft, caption(m_bars.first().from, QStringLiteral(" HH:00")));
        painter.drawText(below, Qt::AlignRight, caption(m_bars.last().to, QStringLiteral(" HH:59")));
    }

    EventHistogram &m_owner;
    QList<EventCounts::Bar> m_bars;
    qsizetype m_highest = 1; ///< events of the highest bar
    qsizetype m_current = 0; ///< the bar that keys act on
};

EventHistogram::EventHistogram(const Texts &texts, QWidget *parent)
    : QWidget(parent), m_texts(texts), cmdIstogramma(new QToolButton(this)), m_bars(new Bars(*this))
{
    cmdIstogramma->setObjectName(QStringLiteral("cmdIstogramma"));
    cmdIstogramma->setAutoRaise(true);
    cmdIstogramma->setCheckable(true);
    cmdIstogramma->setFocusPolicy(Qt::StrongFocus);
    cmdIstogramma->setArrowType(Qt::RightArrow);
    cmdIstogramma->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_bars->hide();
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(cmdIstogramma);
    rows->addWidget(m_bars);
    setCaptions();
    connect(cmdIstogramma, &QToolButton::toggled, this, [this](bool isOpen) {
        cmdIstogramma->setArrowType(isOpen ? Qt::DownArrow : Qt::RightArrow);
        if (isOpen)
            m_bars->remake();
        m_bars->setVisible(isOpen);
        // Where the window scrolls the bars would open below its edge.
        if (isOpen)
            QMetaObject::invokeMethod(this, &EventHistogram::showBars, Qt::QueuedConnection);
    });
}

void EventHistogram::showBars()
{
    for (QWidget *outside = parentWidget(); outside; outside = outside->parentWidget()) {
        if (auto *scrolled = qobject_cast<QScrollArea *>(outside))
            return scrolled->ensureWidgetVisible(m_bars);
    }
}

void EventHistogram::setCounts(const EventCounts &counts)
{
    m_counts = counts;
    setCaptions();
    if (!m_bars->isHidden())
        m_bars->remake();
}

void EventHistogram::setCaptions()
{
    const QString caption = m_texts[m_counts.isByHour() ? OwnText::EventsByHour : OwnText::EventsByDay];
    cmdIstogramma->setText(caption);
    cmdIstogramma->setAccessibleName(caption);
    m_bars->setAccessibleName(caption);
    m_bars->describe();
    m_bars->update();
}
