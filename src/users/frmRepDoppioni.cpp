#include "users/frmRepDoppioni.h"

#include "texts/Texts.h"
#include "widgets/Forms.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>

namespace {

constexpr int fontPoints = 10;
constexpr int wantedLines = 18;
constexpr int leastLines = 5;

/// As wide as its lines, where there is room.
class ReportBox : public QPlainTextEdit
{
public:
    QSize sizeHint() const override
    {
        const QFontMetrics metrics(font());
        const QString line = document()->firstBlock().text();
        return {metrics.horizontalAdvance(line + QLatin1Char('M')) + verticalScrollBar()->sizeHint().width() +
                    2 * frameWidth(),
                metrics.lineSpacing() * wantedLines};
    }
    QSize minimumSizeHint() const override
    {
        return {QPlainTextEdit::minimumSizeHint().width(), fontMetrics().lineSpacing() * leastLines};
    }
};

QFont fixedFont()
{
    QFont font(QStringLiteral("Courier New"), fontPoints);
    font.setStyleHint(QFont::Monospace);
    return font;
}

} // namespace

frmRepDoppioni::frmRepDoppioni(const Texts &texts, const QString &report, QWidget *parent)
    : ChildWindow(QStringLiteral("frmRepDoppioni"), parent),
      rtbRepDoppioni(new ReportBox),
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
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdStampa->setObjectName(QStringLiteral("cmdStampa"));

    connect(cmdOk, &QPushButton::clicked, this, &ChildWindow::unload);
    connect(cmdStampa, &QPushButton::clicked, this, [this] { Q_EMIT Stampa(rtbRepDoppioni->toPlainText()); });
    connect(this, &ChildWindow::unloaded, this, &frmRepDoppioni::Chiudi);
    setKeys(cmdOk, cmdOk);
    cmdOk->setFocus();
}
