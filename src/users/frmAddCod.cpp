#include "users/frmAddCod.h"

#include "texts/OwnText.h"
#include "texts/Texts.h"
#include "users/RunEntry.h"
#include "widgets/Forms.h"
#include "widgets/Messages.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalBlocker>

namespace {

constexpr int numberLength = 4;

/// The caret goes to the end, as after typing there.
void setTyped(QLineEdit *box, const QString &text)
{
    const QSignalBlocker blocker(box);
    if (box->text() != text)
        box->setText(text);
}

} // namespace

frmAddCod::frmAddCod(const Texts &texts, Messages &messages, UserRegister &users, QWidget *parent)
    : ChildWindow(QStringLiteral("frmAddCod"), parent),
      m_texts(texts),
      m_messages(messages),
      m_users(users),
      m_runner(this),
      lblNumTrasm(new QLabel),
      txtNumTrasm(new QLineEdit),
      lblCodPart(new QLabel),
      txtCodPart(new QLineEdit),
      lblMessage(new QLabel),
      Bar(new QProgressBar),
      cmdOK(new QPushButton),
      cmdAnnulla(new QPushButton)
{
    auto *rows = new QGridLayout(this);
    rows->addWidget(lblNumTrasm, 0, 0);
    rows->addWidget(txtNumTrasm, 0, 1);
    rows->addWidget(lblCodPart, 1, 0);
    rows->addWidget(txtCodPart, 1, 1);
    rows->addWidget(lblMessage, 2, 0, 1, 2);
    rows->addWidget(Bar, 3, 0, 1, 2);
    rows->setRowStretch(4, 1);
    rows->addLayout(buttonRow({cmdOK, cmdAnnulla}), 5, 0, 1, 2);

    lblNumTrasm->setObjectName(QStringLiteral("lblNumTrasm"));
    lblNumTrasm->setBuddy(txtNumTrasm);
    txtNumTrasm->setObjectName(QStringLiteral("txtNumTrasm"));
    txtNumTrasm->setMaxLength(numberLength);
    lblCodPart->setObjectName(QStringLiteral("lblCodPart"));
    lblCodPart->setBuddy(txtCodPart);
    txtCodPart->setObjectName(QStringLiteral("txtCodPart"));
    txtCodPart->setMaxLength(LongestCode);
    lblMessage->setObjectName(QStringLiteral("lblMessage"));
    lblMessage->setTextFormat(Qt::PlainText);
    Bar->setObjectName(QStringLiteral("Bar"));
    Bar->setTextVisible(false);
    Bar->setValue(0);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));
    for (QWidget *control : QList<QWidget *>{txtNumTrasm, txtCodPart, cmdOK, cmdAnnulla})
        control->installEventFilter(this);

    connect(txtNumTrasm, &QLineEdit::textChanged, this, &frmAddCod::txtNumTrasm_Change);
    connect(txtCodPart, &QLineEdit::textChanged, this, &frmAddCod::txtCodPart_Change);
    connect(cmdOK, &QPushButton::clicked, this, &frmAddCod::cmdOK_Click);
    connect(cmdAnnulla, &QPushButton::clicked, this, &frmAddCod::cmdAnnulla_Click);
    connect(&m_runner, &TaskRunner::progressed, this,
            [this](const Task::Progress &progress) { Bar->setValue(static_cast<int>(progress.done)); });
    connect(this, &ChildWindow::unloaded, this, [this] { m_hasUnloaded = true; });
    setKeys(cmdOK, cmdAnnulla);
    frmAddCod::setCaptions();
    txtNumTrasm->setFocus();
}

void frmAddCod::setCaptions()
{
    setWindowTitle(m_texts[Text::NuoviPrecodificati]);
    lblNumTrasm->setText(m_texts[Text::NumeroTrasmettitori] + QLatin1Char(':'));
    lblCodPart->setText(m_texts[Text::CodiceDiPartenza] + QLatin1Char(':'));
    Bar->setAccessibleName(windowTitle());
    cmdOK->setText(m_texts[Text::CmdOk]);
    cmdAnnulla->setText(m_texts[Text::CmdAnnulla]);
    int width = 0;
    for (const QString &message :
         {m_texts[Text::InserireNumeroTrasmettitori], m_texts[Text::NumeroTrasmettitoriMaggioreDiZero],
          m_texts[Text::NumeroCodiceMaggioreDiZero], aboveMaximum()})
        width = qMax(width, fontMetrics().horizontalAdvance(message));
    lblMessage->setMinimumSize(width + pixels(60), fontMetrics().height());
    tell(m_message);
}

QString frmAddCod::aboveMaximum() const
{
    return m_texts[Text::SuperatoNumeroMassimoDiCodici] + QString::number(HighestTransmitterCode) + QLatin1Char('!');
}

void frmAddCod::txtNumTrasm_Change()
{
    setTyped(txtNumTrasm, acceptedDigits(txtNumTrasm->text()));
}

void frmAddCod::txtCodPart_Change()
{
    const StartEntry entry = acceptedStart(txtCodPart->text(), txtNumTrasm->text());
    setTyped(txtCodPart, entry.text);
    if (entry.hint == StartHint::NumberFirst) {
        tell([this] { return m_texts[Text::InserireNumeroTrasmettitori]; });
        txtNumTrasm->setFocus();
    } else if (entry.hint == StartHint::AboveMaximum) {
        tell([this] { return aboveMaximum(); });
    }
}

void frmAddCod::cmdOK_Click()
{
    const RunCheck check = checkRun(txtNumTrasm->text(), txtCodPart->text());
    switch (check.fault) {
    case RunFault::NumberNotAboveZero:
        return require(txtNumTrasm, [this] { return m_texts[Text::NumeroTrasmettitoriMaggioreDiZero]; });
    case RunFault::StartNotAboveZero:
        return require(txtCodPart, [this] { return m_texts[Text::NumeroCodiceMaggioreDiZero]; });
    case RunFault::AboveMaximum:
        return require(txtCodPart, [this] { return aboveMaximum(); });
    case RunFault::None:
        break;
    }
    Result<std::unique_ptr<CodeRun>> run = m_users.codeRun(check.first, check.count);
    if (!run)
        return tellFault(run.fault());
    // What has begun is not cancelled: the window refuses to close while it is disabled.
    setEnabled(false);
    Bar->setRange(0, check.count);
    const CodeRun &running = *run.value();
    m_runner.run(std::move(run.value()), {},
                 [this, &running](const Result<void> &result) { runEnded(running, result); });
}

void frmAddCod::runEnded(const CodeRun &run, const Result<void> &result)
{
    Bar->setValue(result ? Bar->maximum() : 0);
    if (!result) {
        setEnabled(true);
        tellFault(result.fault());
    } else if (run.isIncomplete()) {
        m_messages.show(this, Icon::Exclamation, m_texts[Text::NonTuttiICodiciAggiunti],
                        [this, added = run.added()] { end(added); });
    } else {
        end(run.added());
    }
}

void frmAddCod::tellFault(const Fault &fault)
{
    m_messages.show(this, Icon::Critical, m_texts.sentence({OwnText::ArchiveNotChanged, {m_users.archive()}, fault}));
}

void frmAddCod::end(const QList<CodeRun::Added> &added)
{
    // The answer to a message can come after the program has closed the window.
    if (m_hasUnloaded)
        return;
    m_users.codeRunEnded(added);
    Q_EMIT Chiudi(Esito::Done, added.value(0).code);
    unload();
}

void frmAddCod::cmdAnnulla_Click()
{
    canClose();
    unload();
}

bool frmAddCod::canClose()
{
    Q_EMIT Chiudi(Esito::Cancelled, {});
    return true;
}

bool frmAddCod::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress)
        tell({});
    return ChildWindow::eventFilter(watched, event);
}

void frmAddCod::tell(Words words)
{
    m_message = std::move(words);
    lblMessage->setText(m_message ? m_message() : QString());
}

void frmAddCod::require(QLineEdit *box, Words words)
{
    tell(std::move(words));
    box->setFocus();
    box->selectAll();
}
