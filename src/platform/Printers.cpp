#include "platform/Printers.h"

#include <cups/cups.h>

#include <span>

namespace {

class Destinations
{
public:
    Destinations() : m_count(cupsGetDests(&m_list)) {}
    ~Destinations() { cupsFreeDests(m_count, m_list); }
    Destinations(const Destinations &) = delete;
    Destinations &operator=(const Destinations &) = delete;

    std::span<const cups_dest_t> all() const { return {m_list, static_cast<size_t>(m_count)}; }

private:
    cups_dest_t *m_list = nullptr;
    int m_count;
};

} // namespace

QStringList Printers::names() const
{
    const Destinations destinations;
    QStringList names;
    for (const cups_dest_t &printer : destinations.all())
        names.append(QString::fromUtf8(printer.name));
    return names;
}

QString Printers::defaultName() const
{
    const Destinations destinations;
    for (const cups_dest_t &printer : destinations.all()) {
        if (printer.is_default != 0)
            return QString::fromUtf8(printer.name);
    }
    return {};
}

int Printers::defaultIndex() const
{
    const QStringList installed = names();
    if (installed.isEmpty())
        return -1;
    return static_cast<int>(qMax(installed.indexOf(defaultName()), qsizetype{0}));
}
