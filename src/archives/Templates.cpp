#include "archives/Templates.h"

#include "archives/PasswordField.h"
#include "archives/Tables.h"

#include <QRandomGenerator>

#include <array>

namespace {

struct Template {
    const char16_t *name;
    const char *layout;
};

const std::array templates = {
    Template{ArchiveName::UsersTemplate, TableLayout::Users},
    Template{ArchiveName::BandsTemplate, TableLayout::Bands},
    Template{ArchiveName::HolidaysTemplate, TableLayout::Holidays},
    Template{ArchiveName::EventsTemplate, TableLayout::Events},
    Template{ArchiveName::ResultsTemplate, TableLayout::Results},
};

/// A register starts with the row of the three passwords, none of them set.
Result<void> addPasswordRow(ArchiveStore &archives)
{
    Result<Database> users = archives.open(ArchiveName::UsersTemplate, Database::Use::Safe);
    if (!users)
        return users.fault();
    SqlValues fields;
    for (int field = 1; field <= 3; ++field)
        fields.append(scramble({}, *QRandomGenerator::global()));
    return users.value().execute(QStringLiteral("INSERT INTO Password VALUES (?,?,?)"), fields);
}

} // namespace

Result<void> makeTemplates(ArchiveStore &archives)
{
    QByteArray salt(ArchiveKeys::SaltSize, '\0');
    QRandomGenerator::system()->generate(salt.begin(), salt.end());
    for (const Template &made : templates) {
        if (archives.exists(made.name))
            continue;
        if (Result<void> created = archives.create(made.name, made.layout, salt); !created)
            return created;
        if (made.name == QStringView(ArchiveName::UsersTemplate)) {
            if (Result<void> added = addPasswordRow(archives); !added)
                return added;
        }
    }
    return {};
}

Result<void> layTemplates(ProgramFolder &folder)
{
    for (const Template &laid : templates) {
        const QString name = QStringView(laid.name).toString();
        if (folder.exists(name) || folder.installed(name).isEmpty())
            continue;
        if (Result<void> copied = folder.copyInstalled(name); !copied)
            return copied;
    }
    return {};
}
