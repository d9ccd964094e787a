#include "timeprog/StripPicture.h"

#include <QMouseEvent>
#include <QPainter>
#include <QtMath>

namespace {

constexpr double rowGap = 3;           ///< between rows, and beside their captions
constexpr double heavy = 2;            ///< outline of what is marked, line of the present moment
constexpr double leastCharacters = 24; ///< of a row, in average characters
constexpr double usualWidth = 36;
constexpr double leastHeight = 1; ///< of a row, in lines
constexpr double usualHeight = 1.3;
constexpr double largestHeight = 2;

} // namespace

StripPicture::StripPicture(const QString &name, QWidget *parent) : QWidget(parent)
{
    setObjectName(name);
    // It only shows: what it shows can be reached in the list.
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void StripPicture::show(Strips strips)
{
    const bool isOther = m_strips.strips.size() != strips.strips.size();
    m_strips = std::move(strips);
    setAccessibleDescription(m_strips.words);
    if (isOther)
        updateGeometry();
    update();
}

QSize StripPicture::sizeHint() const
{
    return sizeFor(usualWidth, usualHeight);
}

QSize StripPicture::minimumSizeHint() const
{
    return sizeFor(leastCharacters, leastHeight);
}

QSize StripPicture::sizeFor(double characters, double lines) const
{
    const double row = lines * fontMetrics().height() + rowGap;
    return {captionWidth() + qCeil(characters * fontMetrics().averageCharWidth()),
            qCeil(row * static_cast<double>(m_strips.strips.size()) + fontMetrics().height())};
}

int StripPicture::captionWidth() const
{
    int width = 0;
    for (const Strips::Strip &strip : m_strips.strips)
        width = qMax(width, fontMetrics().horizontalAdvance(strip.caption));
    return width + qRound(2 * rowGap);
}

int StripPicture::rowHeight() const
{
    const int share = (height() - fontMetrics().height()) / qMax(1, static_cast<int>(m_strips.strips.size()));
    return qMin(share, qRound(largestHeight * fontMetrics().height()));
}

/// The whole scale of a row.
QRectF StripPicture::rowRect(qsizetype strip) const
{
    const double top = fontMetrics().height() + static_cast<double>(strip) * rowHeight();
    return {static_cast<double>(captionWidth()), top, width() - captionWidth() - heavy, rowHeight() - rowGap};
}

QRectF StripPicture::spanRect(qsizetype strip, Strips::Span span) const
{
    const QRectF row = rowRect(strip);
    const double unit = row.width() / (m_strips.scale.last - m_strips.scale.first + 1);
    return {row.left() + unit * (span.first - m_strips.scale.first), row.top(), unit * (span.last - span.first + 1),
            row.height()};
}

void StripPicture::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    const QColor text = palette().color(QPalette::WindowText);
    for (const auto &[place, caption] : std::as_const(m_strips.ticks)) {
        const double left = spanRect(0, {place, place}).left();
        painter.setPen(text);
        painter.drawText(QPointF(left, fontMetrics().ascent()), caption);
    }
    for (qsizetype i = 0; i < m_strips.strips.size(); ++i) {
        const Strips::Strip &strip = m_strips.strips[i];
        const QRectF row = rowRect(i);
        painter.setPen(text);
        painter.drawText(QRectF(0, row.top(), captionWidth() - rowGap, row.height()), Qt::AlignRight | Qt::AlignVCenter,
                         strip.caption);
        const QRectF there = spanRect(i, strip.there);
        painter.fillRect(there, palette().color(QPalette::Base));
        painter.setPen(QPen(palette().color(QPalette::Mid), 1));
        for (const auto &[place, caption] : std::as_const(m_strips.ticks)) {
            if (strip.there.holds(place) && place > strip.there.first) {
                const double left = spanRect(i, {place, place}).left();
                painter.drawLine(QPointF(left, row.top()), QPointF(left, row.bottom()));
            }
        }
        painter.drawRect(there);
        painter.setPen(QPen(text, 1));
        painter.setBrush(QBrush(text, Qt::Dense6Pattern));
        for (const Strips::Span &span : strip.spans)
            painter.drawRect(spanRect(i, span));
        painter.setPen(QPen(text, heavy));
        painter.setBrush(palette().color(QPalette::Highlight));
        for (const Strips::Span &span : strip.marked)
            painter.drawRect(spanRect(i, span));
        painter.setBrush(Qt::NoBrush);
        if (strip.now) {
            // Seen on what is filled as well as on what is not.
            const double x = spanRect(i, {*strip.now, *strip.now}).center().x();
            for (const auto &[role, thickness] :
                 {std::pair(QPalette::Base, 3 * heavy), std::pair(QPalette::Text, heavy)}) {
                painter.setPen(QPen(palette().color(role), thickness, Qt::SolidLine, Qt::FlatCap));
                painter.drawLine(QPointF(x, row.top() - rowGap), QPointF(x, row.bottom() + rowGap));
            }
        }
    }
}

void StripPicture::mousePressEvent(QMouseEvent *event)
{
    for (qsizetype i = 0; i < m_strips.strips.size(); ++i) {
        const QRectF there = spanRect(i, m_strips.strips[i].there);
        if (event->button() != Qt::LeftButton || !there.contains(event->position()))
            continue;
        const Strips::Span part = m_strips.strips[i].there;
        const double share = (event->position().x() - there.left()) / there.width();
        Q_EMIT clicked(i, qMin(part.last, part.first + static_cast<int>(share * (part.last - part.first + 1))));
        return;
    }
    QWidget::mousePressEvent(event);
}
