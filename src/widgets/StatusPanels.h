#pragma once

#include <QList>
#include <QStatusBar>

class QLabel;

/// A status bar of panels, each with a text or a picture, in some of them with words beside the picture. Panels are
/// numbered from 1 and named "<name of the bar>.Panels(<number>)".
///
/// Their widths are wishes. Where there is less room, the words beside a picture go first, then a text gives way to its
/// shorter form, and the widest panel comes last.
class StatusPanels : public QStatusBar
{
    Q_OBJECT

public:
    /// @param name    of the bar
    /// @param widths  of the panels, in twips; 0 = what the others leave
    StatusPanels(const QString &name, const QList<int> &widths, QWidget *parent = nullptr);

    /// @param shorter  stands in its place where there is too little room; none: the end of the text gives way
    void showText(int panel, const QString &text, const QString &shorter = {});
    /// @param file   of the picture; when it cannot be read the panel is empty but for its words
    /// @param words  what the picture says, for a tool tip and for screen readers
    /// @param beside what can be read beside it, where there is room
    void showPicture(int panel, const QString &file, const QString &words, const QString &beside = {});
    /// A text before the panels that wants to be seen; "" takes it away.
    void showRemark(const QString &text);
    /// Shows a panel in the colours of a selection, or as usual.
    void invert(int panel, bool inverted);
    bool isInverted(int panel) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    class Panel;

    void share();

    QList<Panel *> m_panels;
    Panel *m_remark; ///< named "<name of the bar>.Remark"
};
