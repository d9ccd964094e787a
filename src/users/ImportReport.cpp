#include "users/ImportReport.h"

#include "codes/UserColumns.h"
#include "platform/CsvFile.h"
#include "texts/OwnText.h"
#include "texts/Texts.h"
#include "users/UserLines.h"
#include "users/UserRegister.h"

QString outcomeText(const Texts &texts, ImportOutcome outcome)
{
    switch (outcome) {
    case ImportOutcome::New:
        return texts[OwnText::ImportNew];
    case ImportOutcome::Changed:
        return texts[OwnText::ImportChanged];
    case ImportOutcome::Unchanged:
        return texts[OwnText::ImportUnchanged];
    case ImportOutcome::Refused:
        break;
    }
    return texts[OwnText::ImportRefused];
}

QString reasonText(const Texts &texts, const ImportLine &line)
{
    switch (line.refusal) {
    case ImportRefusal::NoCode:
        return texts[OwnText::ImportNoCode];
    case ImportRefusal::NotDigits:
        return texts[OwnText::ImportNotDigits];
    case ImportRefusal::Rounded:
        return texts[OwnText::ImportRounded];
    case ImportRefusal::OutOfRange:
        return texts[OwnText::ImportOutOfRange];
    case ImportRefusal::TypeUnknown:
        return texts[OwnText::ImportTypeUnknown];
    case ImportRefusal::Double:
        return texts[OwnText::ImportDouble].arg(line.firstLine);
    case ImportRefusal::TooLong:
        return texts[OwnText::ImportTooLong].arg(UserRegister::LongestText);
    case ImportRefusal::None:
        break;
    }
    QStringList reasons;
    if (line.isShortened)
        reasons.append(texts[OwnText::ImportShortened]);
    if (!line.sameNameAs.isEmpty())
        reasons.append(texts[OwnText::ImportSameName].arg(line.sameNameAs));
    return reasons.join(QStringLiteral(", "));
}

QString countsText(const Texts &texts, const ImportCheck &check)
{
    return texts[OwnText::ImportCounts]
        .arg(check.count(ImportOutcome::New))
        .arg(check.count(ImportOutcome::Changed))
        .arg(check.count(ImportOutcome::Unchanged))
        .arg(check.count(ImportOutcome::Refused))
        .arg(check.marked());
}

std::unique_ptr<Task> refusedFile(Disk &disk, const QString &target, const Texts &texts, char separator,
                                  const ImportCheck &check)
{
    CsvWriter lines(separator);
    for (size_t field = 0; field < ImportFieldCount; ++field)
        lines.field(texts[userColumns.at(field).caption]);
    lines.field(texts[OwnText::ImportLine]);
    lines.field(texts[OwnText::ImportReason]);
    lines.endLine();
    const auto write = [&texts, all = check.lines(), refused = check.refused()](CsvWriter &to, qsizetype index) {
        const ImportLine &line = all[refused[index]];
        for (const QString &field : line.fields)
            to.field(guarded(field));
        to.field(QString::number(line.number));
        to.field(reasonText(texts, line));
        to.endLine();
    };
    return std::make_unique<CsvFile>(disk, target, std::move(lines), check.refused().size(), write);
}
