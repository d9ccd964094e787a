#include "widgets/StatusPanels.h"

#include "widgets/Twips.h"

#include <QFileInfo>
#include <QLabel>

StatusPanels::StatusPanels(const QString &name, const QList<int> &widths, QWidget *parent) : QStatusBar(parent)
{
    setObjectName(name);
    for (const int width : widths) {
        auto *panel = new QLabel(this);
        panel->setObjectName(QStringLiteral("%1.Panels(%2)").arg(name).arg(m_panels.size() + 1));
        panel->setMinimumWidth(pixels(width));
        panel->setFrameStyle(static_cast<int>(QFrame::Panel) | static_cast<int>(QFrame::Sunken));
        panel->setMargin(2);
        panel->setTextFormat(Qt::PlainText);
        addPermanentWidget(panel, width == 0 ? 1 : 0);
        m_panels.append(panel);
    }
    m_remark = new QLabel(this);
    m_remark->setObjectName(name + QStringLiteral(".Remark"));
    m_remark->setFrameStyle(static_cast<int>(QFrame::Panel) | static_cast<int>(QFrame::Sunken));
    m_remark->setMargin(2);
    m_remark->setTextFormat(Qt::PlainText);
    m_remark->setBackgroundRole(QPalette::Highlight);
    m_remark->setForegroundRole(QPalette::HighlightedText);
    m_remark->setAutoFillBackground(true);
    // On a narrow screen its end is cut rather than the window pushed over the edge; the hint tells all of it.
    m_remark->setMinimumWidth(16 * m_remark->fontMetrics().averageCharWidth());
    insertPermanentWidget(0, m_remark);
    m_remark->hide();
    setSizeGripEnabled(false);
}

QString StatusPanels::text(int panel) const
{
    return m_panels[panel - 1]->text();
}

void StatusPanels::showText(int panel, const QString &text)
{
    m_panels[panel - 1]->setText(text);
}

void StatusPanels::showPicture(int panel, const QString &file, const QString &words)
{
    QLabel *label = m_panels[panel - 1];
    const QPixmap picture(file);
    const int height = label->fontMetrics().height() + 2;
    if (picture.isNull())
        label->clear();
    else
        label->setPixmap(picture.scaled(height, height, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    label->setAlignment(Qt::AlignCenter);
    label->setProperty("file", QFileInfo(file).fileName());
    label->setToolTip(words);
    label->setAccessibleName(words);
}

void StatusPanels::showRemark(const QString &text)
{
    m_remark->setText(text);
    m_remark->setToolTip(text);
    m_remark->setAccessibleName(text);
    m_remark->setVisible(!text.isEmpty());
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
