#pragma once

#include "platform/Errand.h"
#include "platform/PrintSystem.h"

/// The printers as the event loop may ask for them: the print system is asked in threads, and answers when it can.
class Printers
{
public:
    using ListErrand = Errand<PrinterList>;
    using PaperErrand = Errand<Paper>;

    /// @param system    asked by threads that may outlive this object
    /// @param patience  how long a question that holds nobody up goes on
    explicit Printers(std::shared_ptr<const PrintSystem> system = std::make_shared<PrintSystem>(),
                      std::chrono::milliseconds patience = std::chrono::seconds(2));

    /// The list, or InputOutput when the print system is silent.
    /// @return what is asked, until it is destroyed
    [[nodiscard]] std::unique_ptr<ListErrand> list(ListErrand::Then then) const;
    /// The paper of one of them, with the same limit.
    [[nodiscard]] std::unique_ptr<PaperErrand> paper(const QString &printer, PaperErrand::Then then) const;

    /// The list for a caller that cannot go on without it, whom it holds up for a second at most; empty when the print
    /// system is silent.
    PrinterList listAtOnce() const;

    const std::shared_ptr<const PrintSystem> &system() const { return m_system; }

private:
    std::shared_ptr<const PrintSystem> m_system;
    std::chrono::milliseconds m_patience;
};
