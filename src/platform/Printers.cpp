#include "platform/Printers.h"

namespace {

constexpr std::chrono::seconds atOncePatience(1);

} // namespace

Printers::Printers(std::shared_ptr<const PrintSystem> system, std::chrono::milliseconds patience)
    : m_system(std::move(system)), m_patience(patience)
{
}

std::unique_ptr<Printers::ListErrand> Printers::list(ListErrand::Then then) const
{
    return std::make_unique<ListErrand>([system = m_system] { return system->list(); }, std::move(then), m_patience);
}

std::unique_ptr<Printers::PaperErrand> Printers::paper(const QString &printer, PaperErrand::Then then) const
{
    return std::make_unique<PaperErrand>([system = m_system, printer] { return system->paper(printer); },
                                         std::move(then), m_patience);
}

PrinterList Printers::listAtOnce() const
{
    const auto answer = ListErrand([system = m_system] { return system->list(); }, {}).wait(atOncePatience);
    return answer && *answer ? answer->value() : PrinterList{};
}
