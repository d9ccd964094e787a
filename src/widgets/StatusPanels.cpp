#include "widgets/StatusPanels.h"

#include "widgets/Twips.h"

#include <QFileInfo>
#include <QLabel>
#include <QPainter>
#include <QStyle>

namespace {

constexpr int gap = 3;  ///< between panels, and around them
constexpr int room = 3; ///< around what stands in one

} // namespace

/// Holds the whole text, whatever of it there is room for.
class StatusPanels::Panel : public QLabel
{
public:
    Panel(int width, QWidget *parent) : QLabel(parent), m_wanted(width)
    {
        setFrameStyle(static_cast<int>(QFrame::Panel) | static_cast<int>(QFrame::Sunken));
        setTextFormat(Qt::PlainText);
    }

    bool takesTheRest() const { return m_wanted == 0; }
    int wantedWidth() const { return qMax(m_wanted, fullWidth()); }
    int fullWidth() const
    {
        if (!hasPicture())
            return border() + textWidth(text());
        return pictureWidth() + (m_words.isEmpty() ? 0 : room + textWidth(m_words));
    }
    /// Without the words beside a picture, or with the shorter text.
    int leastWidth() const
    {
        if (hasPicture())
            return pictureWidth();
        return m_shorter.isEmpty() ? fullWidth() : border() + textWidth(m_shorter);
    }
    bool hasPicture() const { return !pixmap().isNull(); }
    QSize minimumSizeHint() const override
    {
        return {takesTheRest() ? 0 : leastWidth(), fontMetrics().height() + 2 * frameWidth()};
    }

    void setShorter(const QString &shorter) { m_shorter = shorter; }
    void setWords(const QString &words) { m_words = words; }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        drawFrame(&painter);
        const QRect inside = contentsRect().adjusted(room, 0, -room, 0);
        QString shown = hasPicture() ? m_words : text();
        if (width() < fullWidth()) {
            shown = hasPicture() ? QString() : m_shorter.isEmpty() ? text() : m_shorter;
            shown = fontMetrics().elidedText(shown, Qt::ElideRight, inside.width());
        }
        QRect place = inside;
        if (hasPicture()) {
            const Qt::Alignment side = shown.isEmpty() ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignVCenter;
            style()->drawItemPixmap(&painter, inside, static_cast<int>(side), pixmap());
            place.setLeft(contentsRect().left() + pictureWidth() - border() + 2 * room);
        }
        style()->drawItemText(&painter, place, Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(), shown,
                              foregroundRole());
    }

private:
    int border() const { return 2 * (frameWidth() + room); }
    int textWidth(const QString &text) const { return text.isEmpty() ? 0 : fontMetrics().horizontalAdvance(text) + 1; }
    int pictureWidth() const { return border() + qRound(pixmap().deviceIndependentSize().width()); }

    const int m_wanted;
    QString m_shorter;
    QString m_words;
};

StatusPanels::StatusPanels(const QString &name, const QList<int> &widths, QWidget *parent) : QStatusBar(parent)
{
    setObjectName(name);
    setSizeGripEnabled(false);
    for (const int width : widths) {
        auto *panel = new Panel(pixels(width), this);
        panel->setObjectName(QStringLiteral("%1.Panels(%2)").arg(name).arg(m_panels.size() + 1));
        m_panels.append(panel);
    }
    m_remark = new Panel(0, this);
    m_remark->setObjectName(name + QStringLiteral(".Remark"));
    m_remark->setBackgroundRole(QPalette::Highlight);
    m_remark->setForegroundRole(QPalette::HighlightedText);
    m_remark->setAutoFillBackground(true);
    m_remark->hide();
}

void StatusPanels::showText(int panel, const QString &text, const QString &shorter)
{
    m_panels[panel - 1]->setText(text);
    m_panels[panel - 1]->setShorter(shorter);
    share();
}

void StatusPanels::showPicture(int panel, const QString &file, const QString &words, const QString &beside)
{
    Panel *shown = m_panels[panel - 1];
    const QPixmap picture(file);
    if (picture.isNull()) {
        shown->setText(beside);
    } else {
        const double ratio = devicePixelRatioF();
        const int height = qRound((shown->fontMetrics().height() + 2) * ratio);
        QPixmap scaled = picture.scaled(height, height, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        scaled.setDevicePixelRatio(ratio);
        shown->setPixmap(scaled);
    }
    shown->setWords(beside);
    shown->setProperty("file", QFileInfo(file).fileName());
    shown->setToolTip(words);
    shown->setAccessibleName(words);
    share();
}

void StatusPanels::showRemark(const QString &text)
{
    m_remark->setText(text);
    m_remark->setToolTip(text);
    m_remark->setAccessibleName(text);
    m_remark->setVisible(!text.isEmpty());
    share();
}

void StatusPanels::invert(int panel, bool inverted)
{
    m_panels[panel - 1]->setBackgroundRole(inverted ? QPalette::Highlight : QPalette::Window);
    m_panels[panel - 1]->setAutoFillBackground(inverted);
}

bool StatusPanels::isInverted(int panel) const
{
    return m_panels[panel - 1]->autoFillBackground();
}

QSize StatusPanels::minimumSizeHint() const
{
    // The window may become as narrow as it likes: what does not fit gives way.
    return {0, fontMetrics().height() + 4 * gap};
}

QSize StatusPanels::sizeHint() const
{
    return minimumSizeHint();
}

void StatusPanels::resizeEvent(QResizeEvent *event)
{
    QStatusBar::resizeEvent(event);
    share();
}

/// Gives each panel its width.
void StatusPanels::share()
{
    int left = gap;
    if (!m_remark->isHidden()) {
        // On a narrow screen its end is cut rather than a panel pushed over the edge; the hint tells all of it.
        m_remark->setGeometry(left, gap, qMin(m_remark->fullWidth(), width() / 3), height() - 2 * gap);
        left += m_remark->width() + gap;
    }
    QList<int> widths;
    int missing = left - width();
    for (const Panel *panel : std::as_const(m_panels)) {
        widths.append(panel->takesTheRest() ? panel->fullWidth() : panel->wantedWidth());
        missing += widths.last() + gap;
    }
    const auto giveWay = [&](const auto &isMeant, int (Panel::*to)() const) {
        for (qsizetype i = 0; i < m_panels.size() && missing > 0; ++i) {
            if (!isMeant(m_panels[i]))
                continue;
            const int given = qMin(missing, widths[i] - (m_panels[i]->*to)());
            widths[i] -= given;
            missing -= given;
        }
    };
    giveWay([](const Panel *) { return true; }, &Panel::fullWidth);
    giveWay([](const Panel *panel) { return panel->hasPicture(); }, &Panel::leastWidth);
    giveWay([](const Panel *panel) { return !panel->hasPicture(); }, &Panel::leastWidth);
    for (qsizetype i = 0; i < m_panels.size(); ++i) {
        // What is still missing, or left over, is that panel's.
        if (m_panels[i]->takesTheRest())
            widths[i] = qMax(0, widths[i] - missing);
        m_panels[i]->setGeometry(left, gap, widths[i], height() - 2 * gap);
        left += widths[i] + gap;
    }
}
