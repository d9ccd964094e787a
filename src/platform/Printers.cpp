#include "platform/Printers.h"

#include <QFile>

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

FaultCode faultOf(ipp_status_t status)
{
    switch (status) {
    case IPP_STATUS_ERROR_NOT_FOUND:
    case IPP_STATUS_ERROR_GONE:
        return FaultCode::NotFound;
    case IPP_STATUS_ERROR_NOT_ACCEPTING_JOBS:
    case IPP_STATUS_ERROR_NOT_AUTHORIZED:
    case IPP_STATUS_ERROR_NOT_AUTHENTICATED:
    case IPP_STATUS_ERROR_FORBIDDEN:
        return FaultCode::AccessDenied;
    default:
        return FaultCode::InputOutput;
    }
}

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

Result<void> Printers::send(const QString &printer, const QString &file, const QString &title) const
{
    // The list carries the options that the operator has set for each printer, which the print system wants back.
    const Destinations destinations;
    for (const cups_dest_t &destination : destinations.all()) {
        if (QString::fromUtf8(destination.name) != printer)
            continue;
        const int job = cupsPrintFile(destination.name, QFile::encodeName(file).constData(), title.toUtf8().constData(),
                                      destination.num_options, destination.options);
        return job == 0 ? Result<void>(Fault{faultOf(cupsLastError()), printer}) : Result<void>();
    }
    return Fault{FaultCode::NotFound, printer};
}

int Printers::defaultIndex() const
{
    const QStringList installed = names();
    if (installed.isEmpty())
        return -1;
    return static_cast<int>(qMax(installed.indexOf(defaultName()), qsizetype{0}));
}
