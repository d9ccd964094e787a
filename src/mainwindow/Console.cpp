#include "mainwindow/Console.h"

#include "startup/PlainText.h"

namespace {

QString row(const QStringList &cells)
{
    static constexpr std::array widths = {10, 8, 15, 15, 9, 4, 2, 6, 7};
    QStringList padded;
    for (qsizetype i = 0; i < cells.size(); ++i)
        padded.append(cells[i].leftJustified(widths.at(static_cast<size_t>(i))));
    return padded.join(QStringLiteral("  "));
}

/// One line that moves nothing on the terminal, whatever a name holds.
QByteArray printable(QString text)
{
    text.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    for (QChar &character : text) {
        if (character.category() == QChar::Other_Control)
            character = QLatin1Char('?');
    }
    return text.toUtf8();
}

} // namespace

Console::Console(Program &program, QObject *parent) : QObject(parent), m_program(program)
{
    connect(&program.road(), &EventRoad::stored, this, &Console::tellStored);
    connect(&program.notices(), &Notices::posted, this, &Console::tellNotices);
    connect(&program.link(), &LinkMonitor::queryEnded, this, &Console::tellLink);
    connect(&program.link(), &LinkMonitor::noPortChosen, this,
            [this] { tell(m_program.texts()[OwnText::NoPortChosen]); });
    connect(&program.link(), &LinkMonitor::portNotAvailable, this, [this] {
        tell(m_program.texts()[Text::PortaSerialeGiaAperta]);
        tellState(Text::PortaSerialeNonDisponibile);
    });
    connect(&program.link(), &LinkMonitor::portLost, this, [this] {
        const QString port = QString::number(m_program.settings().PortaCom);
        tell(m_program.texts().sentence({OwnText::PortLost, {port}, {}}));
        tellState(Text::PortaSerialeNonDisponibile);
    });

    const Texts &texts = program.texts();
    tell(TogliAnd(texts[Text::InterfacciaMultiprotocollo]) + QStringLiteral(" - V1.03"));
    tell(texts.sentence({OwnText::ConsoleStarted, {program.folder().root()}, {}}));
    tellNotices();
    tell(row({texts[Text::Data], texts[Text::Ora], texts[Text::CognomeUtente], texts[Text::NomeUtente],
              texts[Text::Codice], texts[Text::Tipo], texts[Text::Ch], texts[Text::ChDis], texts[Text::KorDis]}));
}

void Console::tell(const QString &line)
{
    m_output.write(printable(line));
}

void Console::tellStored(const Event &event)
{
    const UsersSnapshot::Name name = m_program.users().name(event.Codice, event.Tipo);
    tell(row({QString(event.Data).replace(QLatin1Char('-'), QLatin1Char('/')), event.Ora, name.Cognome, name.Nome,
              event.Codice, event.Tipo, event.Canale, event.AbCh, event.KorDis})
             .trimmed());
}

void Console::tellLink(LinkMonitor::Purpose purpose, const InterfaceConfig &config)
{
    if (config.answered()) {
        tellState(Text::InterfacciaInLinea);
        return;
    }
    if (purpose != LinkMonitor::Purpose::LinkStart)
        return;
    tell(m_program.texts()[Text::InterfacciaNonCollegata]);
    tellState(Text::InterfacciaNonInLinea);
}

void Console::tellState(Text text)
{
    tell(m_program.texts()[text].toUpper().trimmed());
}

void Console::tellNotices()
{
    while (!m_program.notices().isEmpty()) {
        const Notice notice = m_program.notices().take();
        tell(m_program.texts()[OwnText::Notice] + QStringLiteral(": ") + m_program.texts().sentence(notice.message));
    }
}
