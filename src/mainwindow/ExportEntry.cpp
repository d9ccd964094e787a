#include "mainwindow/ExportEntry.h"

#include "archives/Tables.h"
#include "startup/PlainText.h"
#include "texts/OwnText.h"
#include "users/UserLines.h"
#include "widgets/SaveFile.h"

#include <QLocale>

ExportEntry::ExportEntry(Program &program, Messages &messages, QWidget *over)
    : m_program(program), m_messages(messages), m_over(over), m_runner(this)
{
}

void ExportEntry::choose(std::optional<UserRows> users)
{
    const Texts &texts = m_program.texts();
    const FileToSave wanted = {titleOf(texts[OwnText::MnuExportUsers]),
                               texts[OwnText::CsvFiles] + QStringLiteral(" (*.csv)"), QStringLiteral(".csv")};
    askFileToSave(m_over, m_messages, texts, wanted, [this, users = std::move(users)](const QString &file) {
        if (file.isEmpty())
            return;
        if (users)
            write(file, *users);
        else
            read(file);
    });
}

void ExportEntry::read(const QString &file)
{
    m_runner.stop();
    m_saved = std::make_unique<SavedUsers>(m_program.archives());
    m_runner.run(*m_saved, {}, [this, file](const Result<void> &read) {
        const std::unique_ptr<SavedUsers> saved = std::move(m_saved);
        if (read)
            return write(file, saved->users());
        m_program.notices().post(
            Icon::Critical, {OwnText::ArchiveNotOpened, {QStringView(ArchiveName::Users).toString()}, read.fault()});
    });
}

void ExportEntry::write(const QString &file, const UserRows &users)
{
    // Spreadsheets read numbers as the desktop writes them, whatever language the program speaks.
    const UserExport wanted = {file, fieldSeparator(QLocale::system()), m_program.settings().CodProtocollo};
    m_runner.run(
        wanted.task(m_program.folder().disk(), m_program.texts(), users), {},
        [this, file, count = users.count()](const Result<void> &written) {
            if (written)
                m_program.notices().post(Icon::Information,
                                         {OwnText::UsersExported, {file, QString::number(count)}, {}});
            else
                m_program.notices().post(Icon::Exclamation, {OwnText::FileNotWritten, {file}, written.fault()});
        });
}
