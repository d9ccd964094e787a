#pragma once

#include "widgets/ChildWindow.h"

class QLabel;
class QLineEdit;
class QPixmap;
class Texts;

/// What program this is, its version, its licence, the libraries that it stands on, and where its data are.
class frmInfo : public ChildWindow
{
    Q_OBJECT

public:
    /// @param texts    must outlive this window
    /// @param picture  of the product; none leaves its place out
    /// @param folder   program folder
    frmInfo(const Texts &texts, const QPixmap &picture, const QString &folder, QWidget *parent = nullptr);
    void setCaptions() override;

private:
    const Texts &m_texts;

    QLabel *imgInfo;
    QLabel *lblVersione;
    QLabel *lblLicenza;
    QLabel *lblTestoLicenza;
    QLabel *lblLibrerie;
    QLabel *lblTestoLibrerie;
    QLabel *lblDati;
    QLineEdit *txtDati;
    QPushButton *cmdOk;
};
