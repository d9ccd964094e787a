#include "mainwindow/Console.h"

#include "startup/PlainText.h"
#include "startup/Version.h"
#include "texts/DateTimeText.h"
#include "texts/OwnText.h"

#include <array>

namespace {

QString row(const QStringList &cells)
{
    static constexpr std::array widths = {10, 8, 15, 15, 9, 4, 2, 6, 7};
    QStringList padded;
    for (qsizetype i = 0; i < cells.size(); ++i)
        padded.append(cells[i].leftJustified(widths.at(static_cast<size_t>(i))));
    return padded.join(QStringLiteral("  "));
}

} // namespace

Console::Console(Program &program, const QString &remark, QObject *parent) : QObject(parent), m_program(program)
{
    const Texts &texts = program.texts();
    LinkMonitor &link = program.link();
    connect(&program.notices(), &Notices::posted, this, &Console::tellNotices);
    connect(&program.timeProgramme(), &TimeProgramme::lineChanged, this, &Console::tellLine);
    connect(&link, &LinkMonitor::linkChanged, this, &Console::tellLink);
    connect(&link, &LinkMonitor::noPortChosen, this, [this, &texts] { tell(texts[OwnText::NoPortChosen]); });
    connect(&link, &LinkMonitor::portNotAvailable, this, [this, &program, &texts](const Fault &fault) {
        const QList<Message> messages = portMessages(program.settings().PortaCom, fault);
        for (const Message &message : messages)
            tell(texts.sentence(message));
    });
    const auto ofThePort = [this, &program, &texts](OwnText text) {
        tell(texts.sentence({text, {QString::number(program.settings().PortaCom)}, {}}));
    };
    connect(&link, &LinkMonitor::portLost, this, [ofThePort] { ofThePort(OwnText::PortLost); });
    connect(&link, &LinkMonitor::portBack, this, [ofThePort] { ofThePort(OwnText::PortBack); });
    // Nobody has to close a line on the terminal: told, the alarm is closed.
    connect(&link, &LinkMonitor::alarmRaised, this, [this, &link, &texts] {
        if (link.link() != LinkMonitor::Link::PortNotAvailable)
            tell(texts[Text::InterfacciaNonCollegata]);
        link.objMessage_Chiudi();
    });

    tell(texts[Text::InterfacciaMultiprotocollo] + QStringLiteral(" - V") + programVersion());
    tell(texts.sentence({OwnText::ConsoleStarted, {program.folder().root()}, {}}));
    if (!remark.isEmpty())
        tell(remark);
    tellNotices();
}

void Console::tellEvents()
{
    const Texts &texts = m_program.texts();
    connect(&m_program.log(), &EventLog::stored, this, &Console::tellStored);
    tell(row({texts[Text::Data], texts[Text::Ora], texts[Text::CognomeUtente], texts[Text::NomeUtente],
              texts[Text::Codice], texts[Text::Tipo], texts[Text::Ch], texts[Text::ChDis], texts[Text::KorDis]}));
}

void Console::tell(const QString &line)
{
    m_output.write(printable(line).toUtf8());
}

void Console::tellStored(const Event &event)
{
    const User user = m_program.users().nearest(event.Codice, event.Tipo);
    tell(row({DataBarre(event.Data), OraTesto(event.Ora), user.Cognome, user.Nome, event.Codice, typeText(event.Tipo),
              event.Canale, markText(event.AbCh), markText(event.KorDis)})
             .trimmed());
}

void Console::tellLink(LinkMonitor::Link link)
{
    switch (link) {
    case LinkMonitor::Link::Answering:
        tellState(Text::InterfacciaInLinea);
        break;
    case LinkMonitor::Link::NotAnswering:
        tellState(Text::InterfacciaNonInLinea);
        break;
    case LinkMonitor::Link::PortNotAvailable:
        tellState(Text::PortaSerialeNonDisponibile);
        break;
    }
}

void Console::tellLine(bool asserted, TimeProgramme::Cause cause)
{
    static constexpr std::array causes = {OwnText::CauseStart, OwnText::CauseBand, OwnText::CauseHoliday,
                                          OwnText::CauseEnd};
    const Texts &texts = m_program.texts();
    const QString reason = texts[causes.at(static_cast<size_t>(cause))];
    QString line = texts.sentence({asserted ? OwnText::LineAsserted : OwnText::LineReleased, {reason}, {}});
    if (cause != TimeProgramme::Cause::End)
        line += QStringLiteral(". ") + m_program.timeProgramme().untilWhen(texts);
    tell(line);
}

void Console::tellState(Text text)
{
    tell(m_program.texts()[text].toUpper().trimmed());
}

void Console::tellNotices()
{
    while (!m_program.notices().isEmpty()) {
        const Notice notice = m_program.notices().take();
        tell(m_program.texts()[OwnText::Notice] + m_program.texts()[OwnText::Colon] +
             m_program.texts().sentence(notice.message));
    }
}
