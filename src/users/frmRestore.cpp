#include "users/frmRestore.h"

#include "archives/Tables.h"
#include "platform/ProgramFolder.h"
#include "startup/PlainText.h"
#include "texts/OwnText.h"
#include "texts/Texts.h"

#include <QFileInfo>
#include <QHeaderView>
#include <QTreeView>

frmRestore::frmRestore(const Texts &texts, const ProgramFolder &folder, QWidget *parent) : QFileDialog(parent)
{
    setObjectName(QStringLiteral("frmRestore"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(titleOf(texts[OwnText::MnuRestoreUsers]));
    setAcceptMode(AcceptOpen);
    setFileMode(ExistingFile);
    // Nothing is renamed or deleted here.
    setOptions(ReadOnly | DontUseNativeDialog);
    setViewMode(Detail);
    // Copies are told apart by their dates; of what type the files are tells nothing.
    if (auto *files = findChild<QTreeView *>(QStringLiteral("treeView"))) {
        constexpr int typeColumn = 2;
        files->hideColumn(typeColumn);
        files->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    }
    // A copy that was made by hand may have any name.
    setNameFilters({texts[Text::ListaUtenti] + QStringLiteral(" (*.zeb)"), QStringLiteral("*")});
    const QString backup = folder.path(QStringView(ArchiveName::UsersBackup).toString());
    const QString backups = QFileInfo(backup).path();
    setDirectory(QFileInfo(backups).isDir() ? backups : folder.path(QStringView(ArchiveName::Folder).toString()));
    if (QFileInfo(backup).isFile())
        selectFile(backup);
}
