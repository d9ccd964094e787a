#pragma once

#include "events/EventCounts.h"
#include "texts/Texts.h"

#include <QWidget>

class QToolButton;

/// When the events were that a search has found, as bars, folded away until the operator opens it. Nothing is made of
/// the counts while it is folded.
class EventHistogram : public QWidget
{
    Q_OBJECT

public:
    /// @param texts  must outlive this widget
    explicit EventHistogram(const Texts &texts, QWidget *parent = nullptr);

    void setCounts(const EventCounts &counts);
    void setCaptions();

Q_SIGNALS:
    /// A bar was chosen, by pointer or key. @param row  of its first event
    void rowChosen(qsizetype row);

private:
    class Bars;

    void showBars();

    const Texts &m_texts;
    EventCounts m_counts;
    QToolButton *cmdIstogramma;
    Bars *m_bars;
};
