#include "link/EventRow.h"

#include <array>

namespace {

constexpr std::array fields = {&Event::Codice, &Event::Data, &Event::Ora,    &Event::Tipo,
                               &Event::Canale, &Event::AbCh, &Event::KorDis, &Event::DataOrd};

} // namespace

void EventRow::bind(Statement &statement, int position, const Event &event)
{
    for (const auto field : fields)
        statement.bind(position++, event.*field);
}

Event EventRow::read(const Statement &row, int column)
{
    Event event;
    for (const auto field : fields)
        event.*field = row.text(column++);
    return event;
}
