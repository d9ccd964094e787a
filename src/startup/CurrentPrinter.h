#pragma once

#include "platform/PrintJob.h"
#include "startup/Settings.h"
#include "texts/Notices.h"

/// The printer that this program prints on: the one of the setting PRN, an index in the print system's list, or the
/// default one of the print system where the list is shorter.
class CurrentPrinter
{
public:
    struct Found {
        QString name; ///< device name
        Paper paper;
    };
    /// A search for the printer that is chosen; it goes on while this lives.
    class Search
    {
    public:
        /// @param then  called once by the event loop. NotOpen: none is installed; InputOutput: the print system is
        /// silent
        Search(const CurrentPrinter &printer, std::function<void(const Result<Found> &)> then);

    private:
        void listed(const Result<PrinterList> &list);

        const Printers &m_printers;
        const int m_index;
        const std::function<void(const Result<Found> &)> m_then;
        std::unique_ptr<Printers::ListErrand> m_list;
        std::unique_ptr<Printers::PaperErrand> m_paper;
    };

    /// All must outlive this object.
    CurrentPrinter(Settings &settings, const Printers &printers, Notices &notices);

    const Printers &printers() const { return m_printers; }
    bool isChosen() const;
    /// The number that the operator knows it by, counted from 1.
    QString number() const { return QString::number(m_settings.IndStampante + 1); }
    /// Index in @p installed of the printer to be shown as the current one: the print system's default while none is
    /// chosen or the chosen one is gone, -1 when there is none at all.
    int shownIndex(const PrinterList &installed) const;

    /// Makes a printer the current one, now and in the settings file; now also when the file cannot be written.
    Result<void> choose(int index);

    /// Hands a document over to the printer it names and returns at once. A refusal becomes a notice whenever it comes,
    /// and so does it when the print system takes long to say anything.
    void send(PrintDocument document) const;
    /// The program ends: gives jobs under way some time. What has no answer then becomes a notice and is given up.
    void end(std::chrono::milliseconds patience = std::chrono::seconds(2));

    Q_DISABLE_COPY_MOVE(CurrentPrinter)

private:
    void tell(const QString &printer, const Result<void> &answer) const;

    Settings &m_settings;
    const Printers &m_printers;
    Notices &m_notices;
    std::unique_ptr<QObject> m_jobs = std::make_unique<QObject>(); ///< has the jobs under way as its children
};
