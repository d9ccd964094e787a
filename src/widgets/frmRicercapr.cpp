#include "widgets/frmRicercapr.h"

#include "widgets/Twips.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

frmRicercapr::frmRicercapr(const QString &caption, const QString &cancel, Parts parts, QWidget *over)
    : QWidget(over, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      lblGiorno(new QLabel),
      prgBarRic(new QProgressBar),
      cmdAnnulla(new QPushButton)
{
    setObjectName(QStringLiteral("frmRicercapr"));
    setAttribute(Qt::WA_DeleteOnClose);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdAnnulla);
    buttons->addStretch();
    auto *rows = new QVBoxLayout(this);
    rows->addWidget(lblGiorno);
    rows->addWidget(prgBarRic);
    rows->addLayout(buttons);
    lblGiorno->setObjectName(QStringLiteral("lblGiorno"));
    lblGiorno->setTextFormat(Qt::PlainText);
    lblGiorno->setVisible(parts.testFlag(Label));
    prgBarRic->setObjectName(QStringLiteral("prgBarRic"));
    prgBarRic->setMinimumWidth(pixels(4500));
    cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));
    cmdAnnulla->setVisible(parts.testFlag(Button));
    // The keyboard is at the window itself: an Enter too many, or held down, must not stop the task.
    setFocusPolicy(Qt::StrongFocus);
    setProgress(0, 1);
    setCaptions(caption, cancel);
    connect(cmdAnnulla, &QPushButton::clicked, this, &frmRicercapr::Annulla);

    adjustSize();
    setFixedHeight(height());
    const QPoint middle = over->mapToGlobal(QPoint((over->width() - width()) / 2, (over->height() - height()) / 3));
    move(middle);
    show();
    setFocus();
}

void frmRicercapr::setCaptions(const QString &caption, const QString &cancel)
{
    setWindowTitle(caption);
    prgBarRic->setAccessibleName(caption);
    cmdAnnulla->setText(cancel);
}

void frmRicercapr::setLabel(const QString &text)
{
    lblGiorno->setText(text);
}

void frmRicercapr::setProgress(int value, int maximum)
{
    prgBarRic->setRange(0, maximum);
    prgBarRic->setValue(value);
}

void frmRicercapr::closeEvent(QCloseEvent *event)
{
    // Whoever runs the task closes its notice; a window manager's wish to close it is one to stop.
    if (event->spontaneous()) {
        event->ignore();
        if (!cmdAnnulla->isHidden())
            Q_EMIT Annulla();
    }
}

void frmRicercapr::keyPressEvent(QKeyEvent *event)
{
    if (event->isAutoRepeat())
        return;
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!cmdAnnulla->isHidden() && (event->key() == Qt::Key_Escape || (isEnter && cmdAnnulla->hasFocus())))
        cmdAnnulla->click();
    else
        QWidget::keyPressEvent(event);
}
