#include "users/frmRepDoppioni.h"

#include "texts/Texts.h"
#include "widgets/Forms.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>

namespace {

constexpr int fontPoints = 10;
constexpr int visibleLines = 18;

QFont fixedFont()
{
    QFont font(QStringLiteral("Courier New"), fontPoints);
    font.setStyleHint(QFont::Monospace);
    return font;
}

} // namespace

frmRepDoppioni::frmRepDoppioni(const Texts &texts, const QString &report, QWidget *parent)
    : ChildWindow(QStringLiteral("frmRepDoppioni"), parent),
      rtbRepDoppioni(new QPlainTextEdit),
      cmdOk(new QPushButton(texts[Text::CmdOk])),
      cmdStampa(new QPushButton(texts[Text::CmdStampa]))
{
    auto *rows = new QVBoxLayout(this);
    rows->addWidget(rtbRepDoppioni);
    rows->addLayout(buttonRow({cmdOk, cmdStampa}));

    setWindowTitle(texts[Text::ReportDoppioni]);
    rtbRepDoppioni->setObjectName(QStringLiteral("rtbRepDoppioni"));
    rtbRepDoppioni->setAccessibleName(windowTitle());
    rtbRepDoppioni->setReadOnly(true);
    rtbRepDoppioni->setTabChangesFocus(true);
    rtbRepDoppioni->setLineWrapMode(QPlainTextEdit::NoWrap);
    rtbRepDoppioni->setFont(fixedFont());
    rtbRepDoppioni->setPlainText(report);
    // Without the caret the cursor keys scroll.
    rtbRepDoppioni->setTextInteractionFlags(Qt::TextSelectableByMouse);
    rtbRepDoppioni->setFocusPolicy(Qt::StrongFocus);
    const QFontMetrics metrics(rtbRepDoppioni->font());
    rtbRepDoppioni->setMinimumSize(
        metrics.horizontalAdvance(report.section(QLatin1Char('\n'), 0, 0) + QLatin1Char('M')) +
            rtbRepDoppioni->verticalScrollBar()->sizeHint().width() + 2 * rtbRepDoppioni->frameWidth(),
        metrics.lineSpacing() * visibleLines);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdStampa->setObjectName(QStringLiteral("cmdStampa"));

    connect(cmdOk, &QPushButton::clicked, this, &ChildWindow::unload);
    connect(cmdStampa, &QPushButton::clicked, this, [this] { Q_EMIT Stampa(rtbRepDoppioni->toPlainText()); });
    connect(this, &ChildWindow::unloaded, this, &frmRepDoppioni::Chiudi);
    setKeys(cmdOk, cmdOk);
    cmdOk->setFocus();
}
