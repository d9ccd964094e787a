#include "platform/LibraryVersions.h"

#include <gsf/gsf-utils.h>
#include <openssl/crypto.h>
#include <sqlite3.h>

#include <QtGlobal>

namespace {

/// The database library tells on an open database only.
QString sqlcipherVersion()
{
    QString version;
    sqlite3 *database = nullptr;
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_open(":memory:", &database) == SQLITE_OK &&
        sqlite3_prepare_v2(database, "PRAGMA cipher_version", -1, &statement, nullptr) == SQLITE_OK &&
        sqlite3_step(statement) == SQLITE_ROW) {
        const void *text = sqlite3_column_text16(statement, 0);
        version = QString::fromUtf16(static_cast<const char16_t *>(text)).section(QLatin1Char(' '), 0, 0);
    }
    sqlite3_finalize(statement);
    sqlite3_close(database);
    return version;
}

QString named(const char *library, const QString &version)
{
    return (QLatin1String(library) + QLatin1Char(' ') + version).trimmed();
}

} // namespace

QStringList libraryVersions()
{
    // CUPS and libcsv tell the version that they were compiled with, not the one that is loaded.
    return {
        named("Qt", QLatin1String(qVersion())),
        named("SQLCipher", sqlcipherVersion()),
        named("OpenSSL", QLatin1String(OpenSSL_version(OPENSSL_VERSION_STRING))),
        QStringLiteral("CUPS"),
        named("libgsf",
              QStringLiteral("%1.%2.%3").arg(libgsf_major_version).arg(libgsf_minor_version).arg(libgsf_micro_version)),
        QStringLiteral("libcsv")};
}
