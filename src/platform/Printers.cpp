#include "platform/Printers.h"

#include "platform/Termination.h"

#include <QFile>

#include <cups/cups.h>

#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <span>
#include <thread>

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

/// How long the print system is waited for: it may be another machine, which may be off.
constexpr std::chrono::seconds listPatience(1);
constexpr std::chrono::seconds sendPatience(5);
/// A print system that was silent is not asked again for that long.
constexpr std::chrono::seconds silence(30);

/// What @p work makes, or nothing when it takes longer than @p patience; it then ends on its own, unheard.
template<class Work>
auto within(std::chrono::seconds patience, Work work) -> std::optional<decltype(work())>
{
    auto promise = std::make_shared<std::promise<decltype(work())>>();
    auto future = promise->get_future();
    std::thread([promise, work = std::move(work)] {
        // A signal that ends the program is the main thread's affair.
        holdEndSignals();
        promise->set_value(work());
    }).detach();
    if (future.wait_for(patience) != std::future_status::ready)
        return {};
    return future.get();
}

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

Printers::List Printers::list() const
{
    const auto now = std::chrono::steady_clock::now();
    if (m_silentUntil > now)
        return {};
    const std::optional<List> answer = within(listPatience, [] {
        const Destinations destinations;
        List list;
        for (const cups_dest_t &printer : destinations.all()) {
            list.names.append(QString::fromUtf8(printer.name));
            if (printer.is_default != 0)
                list.byDefault = list.names.last();
        }
        return list;
    });
    if (!answer)
        m_silentUntil = now + silence;
    return answer.value_or(List{});
}

QStringList Printers::names() const
{
    return list().names;
}

QString Printers::defaultName() const
{
    return list().byDefault;
}

Result<void> Printers::send(const QString &printer, const QString &file, const QString &title) const
{
    const std::optional<Result<void>> sent = within(sendPatience, [printer, file, title]() -> Result<void> {
        // The list carries the options that the operator has set for each printer, which the print system wants back.
        const Destinations destinations;
        for (const cups_dest_t &destination : destinations.all()) {
            if (QString::fromUtf8(destination.name) != printer)
                continue;
            const int job = cupsPrintFile(destination.name, QFile::encodeName(file).constData(),
                                          title.toUtf8().constData(), destination.num_options, destination.options);
            return job == 0 ? Result<void>(Fault{faultOf(cupsLastError()), printer}) : Result<void>();
        }
        return Fault{FaultCode::NotFound, printer};
    });
    return sent.value_or(Fault{FaultCode::InputOutput, printer});
}

int Printers::defaultIndex() const
{
    const QStringList installed = names();
    if (installed.isEmpty())
        return -1;
    return static_cast<int>(qMax(installed.indexOf(defaultName()), qsizetype{0}));
}
