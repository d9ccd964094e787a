#pragma once

#include <QList>
#include <QStatusBar>

class QLabel;

/// A status bar of panels, each with a text or a picture. Panels are numbered from 1 and named
/// "<name of the bar>.Panels(<number>)"; their widths are the least they have.
class StatusPanels : public QStatusBar
{
    Q_OBJECT

public:
    /// @param name    of the bar
    /// @param widths  of the panels, in twips; 0 = what the others leave
    StatusPanels(const QString &name, const QList<int> &widths, QWidget *parent = nullptr);

    QString text(int panel) const;
    void showText(int panel, const QString &text);
    /// @param file   of the picture; when it cannot be read the panel is empty but for its words
    /// @param words  what the picture says, for a tool tip and for screen readers
    void showPicture(int panel, const QString &file, const QString &words);
    /// A text beside the panels that wants to be seen; "" takes it away.
    void showRemark(const QString &text);
    /// Shows a panel in the colours of a selection, or as usual.
    void invert(int panel, bool inverted);
    bool isInverted(int panel) const;

private:
    QList<QLabel *> m_panels;
    QLabel *m_remark; ///< named "<name of the bar>.Remark"
};
