#pragma once

#include "journal/CoverageWords.h"
#include "journal/Journal.h"
#include "texts/Texts.h"
#include "widgets/TaskRunner.h"

#include <QPushButton>

/// A line that says whether the program listened at the moments that were searched, and leads to the journal. It is
/// there when there is something to say.
class CoverageLine : public QPushButton
{
    Q_OBJECT

public:
    /// @param window  whose line it is; like the others, it must outlive this object
    CoverageLine(const Texts &texts, Journal &journal, ChildWindow *window);

    /// Nothing is said any more.
    void forget();
    /// Reads the journal in turns, and says what it tells. @param until  moments from there on are left out
    /// @param ended  called when that is said; not when the window closes before
    void find(const DailyHours &hours, const Moment &until, std::function<void()> ended);
    /// Says the same in the language of now.
    void setCaptions();
    /// Breaks what is wider than @p width, in pixels.
    void fit(int width);
    /// The line when it says that something is missing, else "".
    QString missing() const { return m_missing.isNothing() ? QString() : coverageWords(m_missing, m_texts); }

Q_SIGNALS:
    /// The operator wants to see the journal of these days.
    void journalWanted(QDate first, QDate last);

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void say(const QList<CoveredSpan> &spans);
    void look();

    const Texts &m_texts;
    Journal &m_journal;
    TaskRunner *m_runner; ///< the window's
    std::unique_ptr<CoverageReading> m_reading;
    DailyHours m_hours;
    Missing m_missing;
    int m_width = QWIDGETSIZE_MAX; ///< that there is room for
};
