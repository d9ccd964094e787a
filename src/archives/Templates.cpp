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
    Result<Statement> insert = users.value().prepare(QStringLiteral("INSERT INTO Password VALUES (?,?,?)"));
    if (!insert)
        return insert.fault();
    for (int field = 1; field <= 3; ++field)
        insert.value().bind(field, scramble({}, *QRandomGenerator::global()));
    const Result<bool> done = insert.value().step();
    return done ? Result<void>() : Result<void>(done.fault());
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
