#include "journal/DayBand.h"

#include "journal/CoverageWords.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace {

constexpr int margin = 3;
constexpr double leastWidth = 3; ///< of a gap: the shortest one is seen
constexpr int hoursBetweenMarks = 6;
constexpr qint64 hourSeconds = 3600;
constexpr qsizetype mostSpansTold = 8;

// Told apart by pattern and by lightness as well, on light and on dark ground.
constexpr QColor listening(0x3d, 0x9b, 0x57);
constexpr QColor silent(0xd0, 0x3c, 0x32);
constexpr QColor unknown(0x8c, 0x8c, 0x8c);

/// Where the seconds of a day lie in a cell.
struct Scale {
    Scale(const DayCoverage &day, const QRect &cell)
        : from(day.range.from), length(double(day.range.to - day.range.from)), band(cell)
    {
        band.adjust(margin, margin, -margin, -margin);
    }
    double at(qint64 second) const { return band.left() + band.width() * double(second - from) / length; }
    QRectF rect(const CoveredSpan &span) const
    {
        const double left = at(span.from);
        const double least = span.state == Listening::Listened ? 0 : leastWidth;
        return {left, band.top(), qMax(least, at(span.to) - left), band.height()};
    }

    qint64 from;
    double length;
    QRectF band;
};

} // namespace

void DayBand::paintSpan(QPainter &painter, const QRectF &rect, Listening state)
{
    if (state == Listening::Listened)
        return painter.fillRect(rect, listening);
    const QColor colour = state == Listening::NotKnown ? unknown : silent;
    painter.fillRect(rect, QBrush(colour, state == Listening::NotKnown ? Qt::Dense5Pattern : Qt::BDiagPattern));
    painter.setPen(colour);
    painter.drawRect(rect.adjusted(0, 0, -1, -1));
}

void DayBand::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const DayCoverage &day = m_days[index.row()];
    const Scale scale(day, option.rect);
    painter->save();
    painter->fillRect(option.rect, option.palette.base());
    // Gaps lie upon what is beside them: a short one is drawn wider than it was.
    for (const bool isGap : {false, true}) {
        for (const CoveredSpan &span : day.spans) {
            if ((span.state != Listening::Listened) == isGap)
                paintSpan(*painter, scale.rect(span), span.state);
        }
    }
    painter->setPen(option.palette.color(QPalette::Mid));
    for (qint64 mark = day.range.from; mark <= day.range.to; mark += hoursBetweenMarks * hourSeconds)
        painter->drawLine(QPointF(scale.at(mark), option.rect.top()), QPointF(scale.at(mark), scale.band.top()));
    if (option.state.testFlag(QStyle::State_Selected)) {
        painter->setPen(QPen(option.palette.color(QPalette::Highlight), 2));
        painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
    }
    painter->restore();
}

bool DayBand::helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                        const QModelIndex &index)
{
    if (event->type() != QEvent::ToolTip || !index.isValid())
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    const DayCoverage &day = m_days[index.row()];
    const Scale scale(day, option.rect);
    QStringList gaps;
    QString around;
    for (const CoveredSpan &span : day.spans) {
        const QRectF rect = scale.rect(span);
        if (event->pos().x() < rect.left() - 1 || event->pos().x() > rect.right() + 1)
            continue;
        if (span.state == Listening::Listened)
            around = spanWords(span, m_texts);
        else if (gaps.size() < mostSpansTold)
            gaps.append(spanWords(span, m_texts));
    }
    QToolTip::showText(event->globalPos(), gaps.isEmpty() ? around : gaps.join(QLatin1Char('\n')), view);
    return true;
}
