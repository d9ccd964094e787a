#pragma once

#include "widgets/ChildWindow.h"

class QLabel;
class QPixmap;
class Texts;

/// What program this is, and its version.
class frmInfo : public ChildWindow
{
    Q_OBJECT

public:
    /// @param picture  of the product; none leaves its place out
    frmInfo(const Texts &texts, const QPixmap &picture, QWidget *parent = nullptr);

private:
    void captions(const Texts &texts);

    QLabel *imgInfo;
    QLabel *lblVersione;
    QPushButton *cmdOk;
};
