#include "startup/PlainText.h"
#include "texts/OwnText.h"
#include "texts/Texts.h"
#include "users/ImportReport.h"
#include "users/frmImport.h"
#include "widgets/Messages.h"
#include "widgets/SaveFile.h"

#include <QCheckBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

// The dry run of an import, and what comes of it.

// The dry run --------------------------------------------------------------------------------------------------------

void frmImport::check()
{
    if (m_isShowing)
        return;
    m_runner.stop();
    m_rows->setRows(0, {});
    setReady(false);
    m_check = std::make_unique<ImportCheck>(m_file.content(), choices(), UserRows(m_users.users()));
    m_runner.run(*m_check, {}, [this](const Result<void> &result) { checked(result); });
}

void frmImport::checked(const Result<void> &result)
{
    Bar->reset();
    if (!result) {
        lblCounts->clear();
        return m_messages.show(
            this, Icon::Critical,
            m_texts.sentence({OwnText::ImportBrokenOff, {m_path, result.fault().subject}, result.fault()}));
    }
    lblCounts->setText(countsText(m_texts, *m_check));
    showLines();
    setReady(true);
}

void frmImport::showLines()
{
    if (!m_check || m_runner.isRunning())
        return;
    const bool onlyRefused = chkOnlyRefused->isChecked();
    const qsizetype count = onlyRefused ? m_check->refused().size() : m_check->lines().size();
    m_rows->setRows(count, [this, onlyRefused](qsizetype row) {
        const ImportLine &line = m_check->lines()[onlyRefused ? m_check->refused()[row] : row];
        QStringList cells = {QString::number(line.number), outcomeText(m_texts, line.outcome),
                             reasonText(m_texts, line)};
        for (const QString &field : line.fields)
            cells.append(field);
        return cells;
    });
}

/// What can be done with the lines. @param isChecked  they are known
void frmImport::setReady(bool isChecked)
{
    const bool hasWork = isChecked && m_check->count(ImportOutcome::New) + m_check->count(ImportOutcome::Changed) > 0;
    m_isChecked = isChecked;
    cmdImport->setEnabled(hasWork);
    cmdSaveRefused->setEnabled(isChecked && !m_check->refused().isEmpty());
}

// What comes of it ---------------------------------------------------------------------------------------------------

void frmImport::cmdSaveRefused_Click()
{
    const FileToSave wanted = {titleOf(cmdSaveRefused->text()), m_texts[OwnText::CsvFiles] + QStringLiteral(" (*.csv)"),
                               QStringLiteral(".csv")};
    askFileToSave(this, m_messages, m_texts, wanted, [this](const QString &file) {
        if (!file.isEmpty() && m_check && !m_runner.isRunning())
            saveRefused(file);
    });
}

void frmImport::saveRefused(const QString &file)
{
    setEnabled(false);
    m_runner.run(refusedFile(m_users.disk(), file, m_texts, choices().format.separator, *m_check), {},
                 [this, file](const Result<void> &written) {
                     setEnabled(true);
                     takeKeyboard();
                     if (!written)
                         m_messages.show(this, Icon::Exclamation,
                                         m_texts.sentence({OwnText::FileNotWritten, {file}, written.fault()}));
                 });
}

void frmImport::cmdImport_Click()
{
    Result<std::unique_ptr<Task>> import = m_users.importing(m_check->lines());
    if (!import)
        return imported(import.fault());
    m_import = std::move(import.value());
    // What has begun is not cancelled: the window refuses to close while it is disabled.
    setEnabled(false);
    m_runner.run(*m_import, {}, [this](const Result<void> &result) { imported(result); });
}

void frmImport::imported(const Result<void> &result)
{
    m_import.reset();
    if (!result) {
        setEnabled(true);
        return m_messages.show(this, Icon::Critical,
                               m_texts.sentence({OwnText::ArchiveNotChanged, {m_users.archive()}, result.fault()}));
    }
    end(m_texts[OwnText::UsersImported]
            .arg(m_check->count(ImportOutcome::New))
            .arg(m_check->count(ImportOutcome::Changed)));
}

void frmImport::cmdAnnulla_Click()
{
    end({});
}

bool frmImport::canClose()
{
    Q_EMIT Chiudi({});
    return true;
}

void frmImport::end(const QString &said)
{
    if (m_hasUnloaded)
        return;
    Q_EMIT Chiudi(said);
    unload();
}
