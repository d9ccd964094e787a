#include "widgets/SaveFile.h"

#include "texts/Texts.h"
#include "widgets/Messages.h"

#include <QFileDialog>

void askFileToSave(QWidget *over, Messages &messages, const Texts &texts, const FileToSave &wanted,
                   const std::function<void(const QString &file)> &then)
{
    auto *dialog = new QFileDialog(over, wanted.title);
    dialog->setObjectName(QStringLiteral("ComDial"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    // The question about an existing file is asked here, in the program's own words.
    dialog->setOptions(QFileDialog::DontConfirmOverwrite | QFileDialog::DontUseNativeDialog);
    dialog->setViewMode(QFileDialog::List);
    dialog->setNameFilter(wanted.filter);
    QObject::connect(dialog, &QFileDialog::rejected, over, [then] { then({}); });
    const auto take = [=, &messages, &texts, ending = wanted.ending](const QString &chosen) {
        // A name may have a point of its own, as a date has.
        const QString file = chosen.endsWith(ending, Qt::CaseInsensitive) ? chosen : chosen + ending;
        if (!QFileInfo::exists(file) && !QFileInfo(file).isSymLink())
            return then(file);
        messages.ask(
            over, texts[Text::IlFile] + file + texts[Text::EsisteGia], Messages::Buttons::YesNo,
            [then, file](Messages::Answer answer) { then(answer == Messages::Answer::Yes ? file : QString()); });
    };
    QObject::connect(dialog, &QFileDialog::fileSelected, over, take);
    dialog->open();
}
