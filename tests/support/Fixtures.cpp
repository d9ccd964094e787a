#include "support/Fixtures.h"

#include "archives/Tables.h"
#include "archives/Templates.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

bool FakeDisk::before(Step step, const QString &path)
{
    static const QStringList names = {u"write"_s, u"flush"_s, u"rename"_s, u"flush folder"_s, u"remove"_s, u"make"_s};
    if (stopAt >= 0 && steps.size() >= stopAt)
        return false;
    steps.append(names[static_cast<int>(step)] + QLatin1Char(' ') + QFileInfo(path).fileName());
    return true;
}

TestFolder::TestFolder() : folder(directory.path(), disk), archives(folder)
{
    QDir(directory.path()).mkdir(u"Archivi"_s);
    if (!makeTemplates(archives))
        qFatal("the templates cannot be made");
    disk.steps.clear();
}

QByteArray TestFolder::read(const QString &name) const
{
    QFile file(folder.path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestFolder::write(const QString &name, const QByteArray &content) const
{
    QFile file(folder.path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s cannot be written", qPrintable(name));
}

QStringList TestFolder::files(const QString &name) const
{
    return QDir(folder.path(name)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

void TestFolder::addUsers(const QList<QStringList> &users)
{
    if (!archives.exists(ArchiveName::Users))
        QFile::copy(folder.path(QStringView(ArchiveName::UsersTemplate).toString()),
                    folder.path(QStringView(ArchiveName::Users).toString()));
    Result<Database> database = archives.open(ArchiveName::Users, Database::Use::ThrowAway);
    Result<Statement> insert =
        database.value().prepare(u"INSERT INTO Utenti (Codice, Tipo, Cognome, Nome) VALUES (?,?,?,?)"_s);
    (void)database.value().execute("BEGIN");
    for (const QStringList &user : users) {
        for (int field = 0; field < 4; ++field)
            insert.value().bind(field + 1, user.value(field));
        if (!insert.value().step())
            qFatal("a user cannot be added");
        insert.value().reset();
    }
    (void)database.value().execute("COMMIT");
}

QStringList TestFolder::rows(QStringView archive, const QString &statement)
{
    const auto fault = [](const Fault &f) { return QStringList{u"FAULT %1"_s.arg(int(f.code))}; };
    Result<Database> database = archives.open(archive, Database::Use::ThrowAway);
    if (!database)
        return fault(database.fault());
    Result<RecordSet> set = RecordSet::open(database.value(), statement, RecordSet::Kind::Snapshot);
    if (!set)
        return fault(set.fault());
    QStringList rows;
    for (RecordSet &all = set.value(); !all.isEof(); all.moveNext()) {
        QStringList cells;
        for (int column = 0; column < all.columnCount(); ++column)
            cells.append(all.value(column));
        rows.append(cells.join(QLatin1Char('|')));
    }
    return rows;
}

QString asText(const Event &event)
{
    return QStringList{event.Codice, event.Data, event.Ora,    event.Tipo,
                       event.Canale, event.AbCh, event.KorDis, event.DataOrd}
        .join(QLatin1Char('|'));
}

qint64 residentPages()
{
#ifdef __SANITIZE_ADDRESS__
    // The sanitizer keeps freed memory on purpose; the size is then looked at in the other builds alone.
    return 0;
#endif
    QFile file(u"/proc/self/statm"_s);
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLongLong() : -1;
}

QStringList takeNotices(Notices &notices)
{
    Texts texts;
    texts.fill(2);
    QStringList sentences;
    while (!notices.isEmpty())
        sentences.append(texts.sentence(notices.take().message));
    return sentences;
}
