#include "events/CoverageLine.h"
#include "events/EventColumns.h"
#include "events/EventExport.h"
#include "events/EventHistogram.h"
#include "events/EventReport.h"
#include "events/frmEventi.h"
#include "startup/PlainText.h"
#include "texts/OwnText.h"
#include "texts/Texts.h"
#include "widgets/Grid.h"
#include "widgets/Messages.h"
#include "widgets/RowsModel.h"
#include "widgets/SaveFile.h"

#include <QLabel>
#include <QPushButton>

// What is made of the events that were found: words about them, a print and a spreadsheet.

namespace {

/// More names would make a message that no screen holds.
constexpr int mostDaysTold = 12;

} // namespace

/// What keeps the search from having found all there is, a line for each reason.
QString frmEventi::lacks(const Result<void> &searched) const
{
    QStringList reasons;
    if (!searched)
        reasons.append(m_texts.sentence({OwnText::SearchBrokenOff, {}, searched.fault()}));
    const auto add = [this, &reasons](OwnText text, const QList<QDate> &days) {
        if (days.isEmpty())
            return;
        QStringList names;
        for (qsizetype i = 0; i < qMin<qsizetype>(days.size(), mostDaysTold); ++i)
            names.append(DataBarre(days[i]));
        if (days.size() > mostDaysTold)
            names.append(QStringLiteral("... (%1)").arg(days.size()));
        reasons.append(m_texts.sentence({text, {names.join(QStringLiteral(", "))}, {}}));
    };
    add(OwnText::DaysNotRead, m_search.unreadDays());
    add(OwnText::DaysIncomplete, m_search.incompleteDays());
    return reasons.join(QLatin1Char('\n'));
}

void frmEventi::searchDone(const Result<void> &searched)
{
    const SearchResults &results = m_search.results();
    m_rowFaultTold = false;
    m_rows->setRows(results.count(), [this](qsizetype row) { return shownRow(row); });
    // Where not all was read, nobody knows that there is nothing.
    const bool isKnown = m_search.isComplete() || results.count() > 0;
    showFound(isKnown);
    if (results.count() > 0) {
        dbgrdDati->setCurrentIndex(m_rows->index(0, 0));
        dbgrdDati->setFocus();
    }
    if (!m_search.isAtEnd())
        return tellOutcome(searched);
    m_coverage->find(m_searched, m_searchedAt, [this, searched] { tellOutcome(searched); });
}

/// When all there is to say stands in the window: whether nothing found means that nobody came, too.
void frmEventi::tellOutcome(const Result<void> &searched)
{
    setBusy(false);
    Q_EMIT this->searched(m_searched, m_search.results().count());
    const bool isNone = m_search.results().count() == 0;
    if (const QString lacking = lacks(searched); !lacking.isEmpty())
        m_messages.show(this, searched ? Icon::Exclamation : Icon::Critical, lacking);
    else if (isNone && m_search.isComplete())
        m_messages.show(this, Icon::Information, m_texts[Text::NessunEventoTrovato]);
}

void frmEventi::showFound(bool isKnown)
{
    showCount(isKnown);
    m_histogram->setCounts(isKnown ? m_search.counts() : EventCounts());
}

void frmEventi::showCount(bool isKnown)
{
    const QString found =
        isKnown ? m_texts.sentence({OwnText::EventsFound, {QString::number(m_search.results().count())}, {}})
                : QString();
    lblTrovati->setText(found);
    fitButtons();
    // The keyboard goes to the grid, and so do readers.
    dbgrdDati->setAccessibleDescription(found);
}

void frmEventi::cmdStampa_Click()
{
    // Nothing else begins while the printer is looked for.
    const auto goOn = [this, focused = QPointer(focusWidget())] {
        setBusy(false);
        if (focused)
            focused->setFocus();
    };
    setBusy(true);
    m_printing.findPrinter(
        [this, goOn] {
            goOn();
            printFound();
        },
        goOn);
}

void frmEventi::printFound()
{
    const qsizetype first = qMax(0, dbgrdDati->currentIndex().row());
    const qsizetype count = m_search.results().count() - first;
    if (count <= 0)
        return m_messages.show(this, Icon::Information, m_texts[Text::NessunEventoDisponibile]);
    setBusy(true);
    const auto fields = [this, first](qsizetype index) { return foundRow(first + index); };
    m_printing.print(std::make_unique<EventReport>(EventReport::Table::Search, m_texts,
                                                   TableReport::Rows{count, fields}, m_coverage->missing()),
                     m_texts[Text::RicercaEventi], [this, count](bool isPrinted) {
                         setBusy(false);
                         if (isPrinted)
                             Q_EMIT printed(m_searched, count);
                         dbgrdDati->setCurrentIndex(m_rows->index(0, 0));
                     });
}

void frmEventi::cmdToExcel_Click()
{
    if (m_search.results().count() == 0)
        return m_messages.show(this, Icon::Information, m_texts[Text::NessunEventoDisponibile]);
    const FileToSave wanted = {TogliAnd(m_texts[Text::CmdEsportaInExcel]), m_texts[Text::CartellaDiLavoroExcel],
                               QStringLiteral(".xls")};
    // The results stand still from here on: nothing else begins before the file is there or not wanted any more.
    setBusy(true);
    askFileToSave(this, m_messages, m_texts, wanted, [this](const QString &file) {
        if (file.isEmpty())
            setBusy(false);
        else
            exportTo(file);
    });
}

void frmEventi::exportTo(const QString &file)
{
    ExportedEvents events;
    events.sheetName = m_texts[Text::EventiFoglio];
    for (const EventColumn &column : EventColumns::found)
        events.captions.append(m_texts[column.caption]);
    events.count = m_search.results().count();
    events.row = [this](qsizetype row) { return foundRow(row); };
    events.note = m_coverage->missing();
    auto work = std::make_unique<EventExport>(m_disk, file, std::move(events));
    setBusy(true);
    const auto label = [this, task = work.get()] {
        const qint64 taken = task->progress().done;
        return m_texts[Text::Record] +
               (taken > 0 ? QStringLiteral(": ") + QString::number(taken) : QStringLiteral(":"));
    };
    m_runner.run(std::move(work), TaskRunner::Notice{[this] { return m_texts[Text::EsportazioneInCorso]; }, {}, label},
                 [this](const Result<void> &written) {
                     setBusy(false);
                     if (written)
                         Q_EMIT exported(m_searched, m_search.results().count());
                     else
                         m_messages.show(this, Icon::Exclamation,
                                         m_texts.sentence({Text::ImpossibileCreareFileExcel, {}, written.fault()}));
                 });
}
