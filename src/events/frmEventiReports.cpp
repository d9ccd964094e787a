#include "events/EventReport.h"
#include "events/frmEventi.h"
#include "events/frmRicercapr.h"
#include "startup/PlainText.h"
#include "texts/Texts.h"
#include "widgets/Messages.h"
#include "widgets/RowsModel.h"

#include <QFile>
#include <QFileDialog>
#include <QPushButton>
#include <QTableView>

// What is made of the events that were found: a print and a spreadsheet.

namespace {

constexpr qint64 stepMilliseconds = 20;

}

void frmEventi::cmdStampa_Click()
{
    if (!m_printing.isReady())
        return;
    const qsizetype first = qMax(0, dbgrdDati->currentIndex().row());
    const qsizetype count = m_search.results().count() - first;
    if (count <= 0)
        return m_messages.show(this, Icon::Information, m_texts[Text::NessunEventoDisponibile]);
    setBusy(true);
    const auto fields = [this, first](qsizetype index) {
        const Result<QStringList> row = m_search.results().row(first + index);
        if (row)
            return row.value();
        // Not from within the print: it is being painted.
        QMetaObject::invokeMethod(
            this, [this, fault = row.fault()] { resultUnreadable(fault); }, Qt::QueuedConnection);
        return QStringList();
    };
    m_printing.print(
        std::make_unique<EventReport>(EventReport::Table::Search, m_texts, TableReport::Rows{count, fields}),
        m_texts[Text::RicercaEventi], [this] {
            setBusy(false);
            dbgrdDati->setCurrentIndex(m_rows->index(0, 0));
        });
}

void frmEventi::resultUnreadable(const Fault &fault)
{
    if (!m_printing.isRunning())
        return;
    m_printing.stop();
    setBusy(false);
    m_messages.show(this, Icon::Critical, m_texts.sentence({OwnText::ResultsUnreadable, {}, fault}));
}

void frmEventi::cmdToExcel_Click()
{
    if (m_search.results().count() == 0)
        return m_messages.show(this, Icon::Information, m_texts[Text::NessunEventoDisponibile]);
    auto *dialog = new QFileDialog(this, TogliAnd(m_texts[Text::CmdEsportaInExcel]));
    dialog->setObjectName(QStringLiteral("ComDial"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    // The question about an existing file is asked here, in the program's own words.
    dialog->setOptions(QFileDialog::DontConfirmOverwrite | QFileDialog::DontUseNativeDialog);
    dialog->setViewMode(QFileDialog::List);
    dialog->setNameFilter(m_texts[Text::CartellaDiLavoroExcel]);
    dialog->setDefaultSuffix(QStringLiteral("xls"));
    connect(dialog, &QFileDialog::fileSelected, this, &frmEventi::cmdToExcel_FileChosen);
    dialog->open();
}

void frmEventi::cmdToExcel_FileChosen(const QString &file)
{
    if (!QFile::exists(file))
        return exportTo(file);
    m_messages.ask(this, m_texts[Text::IlFile] + file + m_texts[Text::EsisteGia], Messages::Buttons::YesNo,
                   [this, file](Messages::Answer answer) {
                       if (answer == Messages::Answer::Yes)
                           exportTo(file);
                   });
}

void frmEventi::exportTo(const QString &file)
{
    // Whatever ran in the meantime: the results stand still while they are written.
    if (m_export || tmrRicerca.isActive() || m_printing.isRunning())
        return;
    ExportedEvents events;
    events.sheetName = m_texts[Text::EventiFoglio];
    for (int column = 0; column < m_rows->columnCount(); ++column)
        events.captions.append(m_rows->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
    events.count = m_search.results().count();
    events.row = [this](qsizetype row) { return m_search.results().row(row); };
    m_export = std::make_unique<EventExport>(m_disk, file, std::move(events));
    setBusy(true);
    m_progress =
        new frmRicercapr(m_texts[Text::EsportazioneInCorso], m_texts[Text::CmdAnnulla], frmRicercapr::Label, this);
    m_progress->setLabel(m_texts[Text::Record] + QLatin1Char(':'));
    tmrEsporta.start(0);
}

void frmEventi::tmrEsporta_Timer()
{
    const Result<bool> stepped = m_export->step(stepMilliseconds);
    if (stepped && !stepped.value()) {
        m_progress->setLabel(m_texts[Text::Record] + QStringLiteral(": ") + QString::number(m_export->position()));
        m_progress->setProgress(static_cast<int>(m_export->position()), static_cast<int>(m_export->count()));
        return;
    }
    exportDone();
    if (!stepped)
        m_messages.show(this, Icon::Exclamation,
                        m_texts.sentence({Text::ImpossibileCreareFileExcel, {}, stepped.fault()}));
}

void frmEventi::exportDone()
{
    tmrEsporta.stop();
    m_export.reset();
    if (m_progress)
        m_progress->close();
    setBusy(false);
}
