#include "users/frmRepDoppioni.h"

#include "texts/Texts.h"
#include "widgets/Forms.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>

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

/// Puts a text into a box, in pieces of some lines.
class Filling : public Task
{
public:
    Filling(QPlainTextEdit *box, QString text) : m_end(box->document()), m_text(std::move(text)) {}

    Result<bool> step(const QDeadlineTimer &until) override
    {
        do {
            qsizetype next = m_next;
            for (int line = 0; line < pieceLines && next < m_text.size(); ++line) {
                const qsizetype end = m_text.indexOf(QLatin1Char('\n'), next);
                next = end < 0 ? m_text.size() : end + 1;
            }
            m_end.insertText(m_text.sliced(m_next, next - m_next));
            m_next = next;
        } while (m_next < m_text.size() && !until.hasExpired());
        return m_next == m_text.size();
    }
    Progress progress() const override { return {m_next, m_text.size()}; }

private:
    static constexpr int pieceLines = 200;

    QTextCursor m_end;
    const QString m_text;
    qsizetype m_next = 0;
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
      m_texts(texts),
      m_runner(this),
      rtbRepDoppioni(new ReportBox),
      cmdOk(new QPushButton),
      cmdStampa(new QPushButton)
{
    auto *rows = new QVBoxLayout(this);
    rows->addWidget(rtbRepDoppioni);
    rows->addLayout(buttonRow({cmdOk, cmdStampa}));

    rtbRepDoppioni->setObjectName(QStringLiteral("rtbRepDoppioni"));
    rtbRepDoppioni->setReadOnly(true);
    rtbRepDoppioni->setTabChangesFocus(true);
    rtbRepDoppioni->setLineWrapMode(QPlainTextEdit::NoWrap);
    rtbRepDoppioni->setFont(fixedFont());
    rtbRepDoppioni->setUndoRedoEnabled(false);
    // Without the caret the cursor keys scroll.
    rtbRepDoppioni->setTextInteractionFlags(Qt::TextSelectableByMouse);
    rtbRepDoppioni->setFocusPolicy(Qt::StrongFocus);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdStampa->setObjectName(QStringLiteral("cmdStampa"));

    connect(cmdOk, &QPushButton::clicked, this, &ChildWindow::unload);
    connect(cmdStampa, &QPushButton::clicked, this, [this, report] { Q_EMIT Stampa(report); });
    connect(this, &ChildWindow::unloaded, this, &frmRepDoppioni::Chiudi);
    setKeys(cmdOk, cmdOk);
    frmRepDoppioni::setCaptions();
    cmdOk->setFocus();
    m_filling = std::make_unique<Filling>(rtbRepDoppioni, report);
    (void)m_runner.runAtOnce(*m_filling, {});
    rtbRepDoppioni->moveCursor(QTextCursor::Start);
}

void frmRepDoppioni::setCaptions()
{
    setWindowTitle(m_texts[Text::ReportDoppioni]);
    rtbRepDoppioni->setAccessibleName(windowTitle());
    cmdOk->setText(m_texts[Text::CmdOk]);
    cmdStampa->setText(m_texts[Text::CmdStampa]);
}
