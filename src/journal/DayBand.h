#pragma once

#include "journal/JournalView.h"

#include <QStyledItemDelegate>

/// Paints each day of a list as a band from its beginning to its end: solid where the program listened, hatched where
/// it did not, dotted where nobody knows, blank where the day lies ahead. The mouse is told the times.
class DayBand : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// @param texts  must outlive this object
    DayBand(const Texts &texts, QObject *parent) : QStyledItemDelegate(parent), m_texts(texts) {}

    /// Paints time in which the program listened, or did not.
    static void paintSpan(QPainter &painter, const QRectF &rect, Listening state);

    /// The days of the rows.
    void setDays(QList<DayCoverage> days) { m_days = std::move(days); }
    const QList<DayCoverage> &days() const { return m_days; }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;

private:
    const Texts &m_texts;
    QList<DayCoverage> m_days;
};
