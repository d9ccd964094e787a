#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;

/// Shows how far a long task has come: the search, the export, loading the register and its duplicates.
class frmRicercapr : public QWidget
{
    Q_OBJECT

public:
    /// A task that cannot be stopped has no button, one that has nothing to tell no label.
    enum Part { Bar = 0, Button = 1, Label = 2 };
    Q_DECLARE_FLAGS(Parts, Part)

    /// @param caption  of the window; @param cancel  of the button
    /// @param over  window whose task it is: the notice lies over it, goes with it, and is deleted when it is closed
    frmRicercapr(const QString &caption, const QString &cancel, Parts parts, QWidget *over);

    /// As for the constructor.
    void setCaptions(const QString &caption, const QString &cancel);
    void setLabel(const QString &text);
    /// @param value  0 to @p maximum
    void setProgress(int value, int maximum);

Q_SIGNALS:
    /// The operator wants the task to stop.
    void Annulla();

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QLabel *lblGiorno;
    QProgressBar *prgBarRic;
    QPushButton *cmdAnnulla;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(frmRicercapr::Parts)
