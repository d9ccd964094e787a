#include "platform/PrintSystem.h"

#include <QFile>

#include <cups/cups.h>
#include <cups/pwg.h>

#include <span>

namespace {

/// A connection whose other end may be silent for some seconds: a question that nobody answers comes to an end. Jobs go
/// without that limit, since one that was given up might be printed all the same.
class Connection
{
public:
    Connection()
        : m_http(
              httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1, patience * 1000, nullptr))
    {
        if (m_http)
            httpSetTimeout(
                m_http, patience, [](http_t *, void *) { return 0; }, nullptr);
    }
    ~Connection() { httpClose(m_http); }
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    operator http_t *() const { return m_http; }

private:
    static constexpr int patience = 10; ///< in seconds
    http_t *m_http;
};

class Destinations
{
public:
    explicit Destinations(http_t *connection) : m_count(cupsGetDests2(connection, &m_list)) {}
    ~Destinations() { cupsFreeDests(m_count, m_list); }
    Destinations(const Destinations &) = delete;
    Destinations &operator=(const Destinations &) = delete;

    std::span<cups_dest_t> all() const { return {m_list, static_cast<size_t>(m_count)}; }
    cups_dest_t *find(const QString &name) const
    {
        for (cups_dest_t &printer : all()) {
            if (QString::fromUtf8(printer.name) == name)
                return &printer;
        }
        return nullptr;
    }

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

Paper paperOf(const cups_size_t &size)
{
    constexpr double unitsPerMillimetre = 100;
    Paper paper;
    paper.size = QSizeF(size.width, size.length) / unitsPerMillimetre;
    const QMarginsF margins = QMarginsF(size.left, size.top, size.right, size.bottom) / unitsPerMillimetre;
    // A queue without a driver knows of no margins; hardly a printer has none.
    if (!margins.isNull())
        paper.margins = margins;
    return paper;
}

} // namespace

int PrinterList::defaultIndex() const
{
    if (names.isEmpty())
        return -1;
    return static_cast<int>(qMax(names.indexOf(byDefault), qsizetype{0}));
}

Result<PrinterList> PrintSystem::list() const
{
    const Connection connection;
    PrinterList list;
    if (!connection)
        return list;
    const Destinations destinations(connection);
    for (const cups_dest_t &printer : destinations.all()) {
        list.names.append(QString::fromUtf8(printer.name));
        if (printer.is_default != 0)
            list.byDefault = list.names.last();
    }
    return list;
}

Result<Paper> PrintSystem::paper(const QString &printer) const
{
    const Connection connection;
    if (!connection)
        return Paper{};
    const Destinations destinations(connection);
    cups_dest_t *destination = destinations.find(printer);
    cups_dinfo_t *known = destination ? cupsCopyDestInfo(connection, destination) : nullptr;
    if (!known)
        return Paper{};
    const char *name = ippGetString(cupsFindDestDefault(connection, destination, known, CUPS_MEDIA), 0, nullptr);
    // What somebody has set for this printer goes before; it may stand there by either name, and is sent with the job.
    for (const char *option : {"PageSize", CUPS_MEDIA}) {
        const char *set = cupsGetOption(option, destination->num_options, destination->options);
        if (const pwg_media_t *media = set ? pwgMediaForPPD(set) : nullptr)
            name = media->pwg;
        else if (set)
            name = set;
    }
    cups_size_t size{};
    const bool isKnown =
        name && cupsGetDestMediaByName(connection, destination, known, name, CUPS_MEDIA_FLAGS_DEFAULT, &size) != 0;
    cupsFreeDestInfo(known);
    return isKnown && size.width > 0 && size.length > 0 ? paperOf(size) : Paper{};
}

Result<void> PrintSystem::send(const QString &printer, const QString &file, const QString &title) const
{
    // The list carries the options that the operator has set for each printer, which the print system wants back.
    const Destinations destinations(CUPS_HTTP_DEFAULT);
    const cups_dest_t *destination = destinations.find(printer);
    if (!destination)
        return Fault{FaultCode::NotFound, printer};
    const int job = cupsPrintFile(destination->name, QFile::encodeName(file).constData(), title.toUtf8().constData(),
                                  destination->num_options, destination->options);
    return job == 0 ? Result<void>(Fault{faultOf(cupsLastError()), printer}) : Result<void>();
}
