#include "widgets/frmStampaInCorso.h"

#include "texts/Texts.h"
#include "widgets/Twips.h"

#include <QGuiApplication>
#include <QLabel>
#include <QMdiSubWindow>
#include <QVBoxLayout>

frmStampaInCorso::frmStampaInCorso(const Texts &texts, QWidget *window)
    : QWidget(window->window(), Qt::Tool | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      m_texts(texts),
      lblStampa(new QLabel)
{
    setObjectName(QStringLiteral("frmStampaInCorso"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    lblStampa->setObjectName(QStringLiteral("lblStampa"));
    lblStampa->setAlignment(Qt::AlignCenter);
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(pixels(600), pixels(300), pixels(600), pixels(300));
    rows->addWidget(lblStampa);
    setCaptions();
    adjustSize();

    auto *frame = qobject_cast<QMdiSubWindow *>(window->parentWidget());
    const QWidget *over = frame ? frame : window;
    const QPoint corner = over->parentWidget() ? over->parentWidget()->mapToGlobal(over->pos()) : over->pos();
    move(corner + QPoint((over->width() - width()) / 2, (over->height() - height()) / 3));
    show();
}

void frmStampaInCorso::setCaptions()
{
    setWindowTitle(m_texts[Text::StampaInCorso]);
    lblStampa->setText(m_texts[Text::StampaInCorso].toUpper());
    // The title stands between the buttons of the frame.
    setMinimumWidth(fontMetrics().horizontalAdvance(windowTitle()) + pixels(2250));
}
