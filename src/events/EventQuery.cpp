#include "events/EventQuery.h"

#include "startup/PlainText.h"
#include "texts/DateTimeText.h"

QueryFault checkQuery(const TypedQuery &query, const UserDirectory &users)
{
    if (!DataValida(query.firstDay))
        return QueryFault::FirstDay;
    if (!DataValida(query.lastDay))
        return QueryFault::LastDay;
    if (!OraValida(query.from))
        return QueryFault::From;
    if (!OraValida(query.to))
        return QueryFault::To;
    if (DataOrdinabile(query.firstDay) > DataOrdinabile(query.lastDay))
        return QueryFault::Order;
    if (query.channels == std::array<bool, 4>{})
        return QueryFault::NoChannel;
    if (!query.transmitters && !query.keypads)
        return QueryFault::NoType;
    if (query.person && !users.findCode(query.person->code))
        return QueryFault::UnknownPerson;
    return QueryFault::None;
}

Text queryText(QueryFault fault)
{
    switch (fault) {
    case QueryFault::FirstDay:
    case QueryFault::LastDay:
        return Text::FormatoDataNonCorretto;
    case QueryFault::From:
    case QueryFault::To:
        return Text::FormatoOraNonCorretto;
    case QueryFault::Order:
        return Text::DataDiPartenzaDopoArrivo;
    case QueryFault::NoChannel:
        return Text::SelezionareUnCanale;
    case QueryFault::NoType:
        return Text::SelezionareUnTipo;
    case QueryFault::UnknownPerson:
    case QueryFault::None:
        break;
    }
    return Text::CodiceONominativoNonPresente;
}

EventQuery eventQuery(const TypedQuery &typed)
{
    return {typed, rangeDay(typed.firstDay, End::First), rangeDay(typed.lastDay, End::Last), timeOf(typed.from),
            timeOf(typed.to)};
}

DayCondition dayCondition(const EventQuery &query)
{
    SqlValues values;
    const auto bound = [&values](const QString &value) {
        values.append(value);
        return QStringLiteral("?%1").arg(values.size());
    };
    QString condition;
    // Events hold their codes without zeros in front: nothing is left of a code of zeros alone.
    if (query.person || !query.code.isEmpty())
        condition = QStringLiteral("Codice=") + bound(query.person ? query.person->code : TogliZeri(query.code)) +
                    QStringLiteral(" AND ");
    condition += QStringLiteral("Ora>=") + bound(OraTesto(query.from));
    condition += QStringLiteral(" AND Ora<=") + bound(OraTesto(query.to));
    if (query.state == EventQuery::State::OnlyEnabled)
        condition += QStringLiteral(" AND AbCh<>'X' AND KorDis<>'X'");
    else if (query.state == EventQuery::State::OnlyDisabled)
        condition += QStringLiteral(" AND (AbCh='X' OR KorDis='X')");

    QStringList channels;
    for (int i = 0; i < 4; ++i) {
        if (query.channels[static_cast<std::size_t>(i)])
            channels.append(QStringLiteral("Canale='%1'").arg(QChar(u'A' + i)));
    }
    condition += QStringLiteral(" AND (") + channels.join(QStringLiteral(" OR ")) + QStringLiteral(") AND (");
    if (query.transmitters)
        condition += QStringLiteral("Tipo='TX'");
    if (query.keypads)
        condition += query.transmitters ? QStringLiteral("OR Tipo='DKS'") : QStringLiteral("Tipo='DKS'");
    return {condition + QLatin1Char(')'), values};
}
