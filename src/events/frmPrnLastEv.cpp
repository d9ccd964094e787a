#include "events/frmPrnLastEv.h"

#include "archives/Tables.h"
#include "events/EventReport.h"
#include "link/EventLog.h"
#include "platform/Clock.h"
#include "startup/Numbers.h"
#include "startup/PlainText.h"
#include "texts/OwnText.h"
#include "widgets/Filtering.h"
#include "widgets/Forms.h"
#include "widgets/Messages.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <limits>
#include <tuple>

frmPrnLastEv::frmPrnLastEv(Source source, const CurrentPrinter &printer, const Texts &texts, Messages &messages,
                           QWidget *parent)
    : ChildWindow(QStringLiteral("frmPrnLastEv"), parent),
      m_log(source.log),
      m_clock(source.clock),
      m_texts(texts),
      m_messages(messages),
      m_archives(source.archives),
      m_users(source.archives, ArchiveName::PrintUsers),
      m_events(source.archives, QStringLiteral("Archivi/Stampa.$$$")),
      m_runner(this),
      m_printing(this, printer, texts, messages),
      lblPrnLast(new QLabel),
      txtNumEv(new QLineEdit),
      lblPrnEv(new QLabel),
      cmdOk(new QPushButton),
      cmdAnnulla(new QPushButton)
{
    auto *number = new QHBoxLayout;
    number->addWidget(lblPrnLast);
    number->addWidget(txtNumEv);
    number->addWidget(lblPrnEv);
    arrange(this, number, {cmdOk, cmdAnnulla});
    lblPrnLast->setBuddy(txtNumEv);
    makeNumberBox(txtNumEv);

    lblPrnLast->setObjectName(QStringLiteral("lblPrnLast"));
    txtNumEv->setObjectName(QStringLiteral("txtNumEv"));
    lblPrnEv->setObjectName(QStringLiteral("lblPrnEv"));
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));

    connect(txtNumEv, &QLineEdit::textChanged, this, &frmPrnLastEv::txtNumEv_Change);
    connect(cmdOk, &QPushButton::clicked, this, &frmPrnLastEv::cmdOk_Click);
    connect(cmdAnnulla, &QPushButton::clicked, this, &frmPrnLastEv::unload);
    setKeys(cmdOk, cmdAnnulla);

    frmPrnLastEv::setCaptions();
}

void frmPrnLastEv::setCaptions()
{
    setWindowTitle(m_texts[Text::StampaDegliUltimiEventi]);
    fitTitle(this);
    lblPrnLast->setText(m_texts[Text::StampaDegliUltimi]);
    lblPrnEv->setText(m_texts[Text::EventiDopoNumero]);
    cmdOk->setText(m_texts[Text::CmdOk]);
    cmdAnnulla->setText(m_texts[Text::CmdChiudi]);
}

bool frmPrnLastEv::open()
{
    Result<void> opened = m_users.begin();
    if (opened) {
        const auto ended = m_runner.runAtOnce(m_users, [this](const Result<void> &read) {
            cmdOk->setEnabled(true);
            if (!usersRead(read))
                unload();
        });
        cmdOk->setEnabled(ended.has_value());
        opened = ended.value_or(Result<void>());
    }
    return usersRead(opened);
}

/// @return false when they cannot be, which the operator has been told
bool frmPrnLastEv::usersRead(const Result<void> &read)
{
    if (!read) {
        m_messages.show(
            underneath(), Icon::Critical,
            m_texts.sentence({OwnText::UsersUnreadable, {QStringView(ArchiveName::Users).toString()}, read.fault()}));
    }
    return read.ok();
}

void frmPrnLastEv::txtNumEv_Change()
{
    keepAccepted(txtNumEv, SoloCifre);
}

void frmPrnLastEv::cmdOk_Click()
{
    const double number = leadingNumber(txtNumEv->text());
    if (number <= 0)
        return txtNumEv->clear();
    constexpr auto most = std::numeric_limits<int>::max();
    m_printing.findPrinter([this, count = static_cast<qsizetype>(qMin<double>(number, most))] { printLast(count); });
}

void frmPrnLastEv::printLast(qsizetype number)
{
    const QDate day = m_log.day();
    if (!day.isValid())
        return eventsRead(Fault{FaultCode::NotOpen, ArchiveName::events(m_clock.date())});
    const Result<DayFiles> files = filesOfDay(m_archives.folder(), day);
    Result<void> begun = files ? m_events.start(files.value(), number) : Result<void>(files.fault());
    if (begun) {
        cmdOk->setEnabled(false);
        const auto ended = m_runner.runAtOnce(m_events, [this](const Result<void> &read) { eventsRead(read); });
        if (!ended)
            return;
        begun = *ended;
    }
    eventsRead(begun);
}

void frmPrnLastEv::eventsRead(const Result<void> &read)
{
    cmdOk->setEnabled(true);
    if (!read)
        return m_messages.show(
            this, Icon::Critical,
            m_texts.sentence({OwnText::DayArchiveUnavailable, {read.fault().subject}, read.fault()}));
    const QList<ListedEvent> rows = m_events.take();
    if (rows.isEmpty())
        return m_messages.show(this, Icon::Information, m_texts[Text::NessunEventoDisponibile]);

    const DailyHours days = {rows.constFirst().event.Data, rows.constLast().event.Data};
    const auto fields = [this, rows](qsizetype index) {
        ListedEvent row = rows[index];
        if (const User *user = m_users.findCode(row.event.Codice))
            std::tie(row.Cognome, row.Nome) = std::pair(user->Cognome, user->Nome);
        return textsOf(EventColumns::last, row);
    };
    m_printing.print(
        std::make_unique<EventReport>(EventReport::Table::LastEvents, m_texts, TableReport::Rows{rows.size(), fields}),
        m_texts[Text::UltimiEventiTitolo], [this, days, count = rows.size()](bool isPrinted) {
            if (isPrinted)
                Q_EMIT printed(days, count);
        });
}
