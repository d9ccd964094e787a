#include "widgets/frmStampaInCorso.h"

#include "texts/Texts.h"
#include "widgets/Twips.h"

#include <QGuiApplication>
#include <QLabel>
#include <QMdiSubWindow>
#include <QVBoxLayout>

frmStampaInCorso::frmStampaInCorso(const Texts &texts, QWidget *window)
    : QWidget(window->window(), Qt::Tool | Qt::CustomizeWindowHint | Qt::WindowTitleHint)
{
    setObjectName(QStringLiteral("frmStampaInCorso"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowTitle(texts[Text::StampaInCorso]);
    auto *lblStampa = new QLabel(texts[Text::StampaInCorso].toUpper());
    lblStampa->setObjectName(QStringLiteral("lblStampa"));
    lblStampa->setAlignment(Qt::AlignCenter);
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(pixels(600), pixels(300), pixels(600), pixels(300));
    rows->addWidget(lblStampa);
    // The title stands between the buttons of the frame.
    setMinimumWidth(fontMetrics().horizontalAdvance(windowTitle()) + pixels(2250));
    adjustSize();

    auto *frame = qobject_cast<QMdiSubWindow *>(window->parentWidget());
    const QWidget *over = frame ? frame : window;
    const QPoint corner = over->parentWidget() ? over->parentWidget()->mapToGlobal(over->pos()) : over->pos();
    move(corner + QPoint((over->width() - width()) / 2, (over->height() - height()) / 3));
    show();
}
