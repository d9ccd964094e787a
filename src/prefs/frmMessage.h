#pragma once

#include "widgets/ChildWindow.h"

class QLabel;
class QPixmap;
class Texts;

/// The interface does not answer. The alarm stands until this window is unloaded: by a click on its button, or by keys
/// once a click beside it, or the main window, has given it the keyboard.
class frmMessage : public ChildWindow
{
    Q_OBJECT

public:
    /// @param texts    must outlive this window
    /// @param warning  picture beside the words; none leaves its place out
    frmMessage(const Texts &texts, const QPixmap &warning, QWidget *parent = nullptr);
    void setCaptions() override;

protected:
    void mousePressEvent(QMouseEvent *event) override;

private:
    const Texts &m_texts;

    QLabel *imgWarning;
    QLabel *lblMessage;
    QPushButton *cmdOk;
};
