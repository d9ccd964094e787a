#include "support/Fixtures.h"

#include "archives/ReunitedDay.h"
#include "archives/Templates.h"
#include "texts/DateTimeText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

Result<void> FakeDisk::before(Step step, const QString &path)
{
    static const QStringList names = {u"write"_s,  u"flush"_s, u"rename"_s, u"flush folder"_s,
                                      u"remove"_s, u"make"_s,  u"link"_s};
    if (stopAt >= 0 && steps.size() >= stopAt && (!goesOn || failed == 0))
        return (++failed, Fault{fault, path});
    steps.append(names[static_cast<int>(step)] + QLatin1Char(' ') + QFileInfo(path).fileName());
    return {};
}

TestFolder::TestFolder()
{
    QDir(directory.path()).mkdir(u"Archivi"_s);
    if (!makeTemplates(archives))
        qFatal("the templates cannot be made");
    disk.steps.clear();
}

QByteArray BareFolder::read(const QString &name) const
{
    QFile file(folder.path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void BareFolder::write(const QString &name, const QByteArray &content) const
{
    QFile file(folder.path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s cannot be written", qPrintable(name));
}

void TestFolder::damage(const QString &name) const
{
    constexpr qsizetype page = 4096;
    const QByteArray content = read(name);
    write(name, content.chopped(page) + QByteArray(page, '\0'));
}

QStringList BareFolder::files(const QString &name) const
{
    return QDir(folder.path(name)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

namespace {

void addRows(ArchiveStore &archives, const QString &archive, QStringView archiveTemplate, const QString &insertion,
             const QList<QStringList> &rows)
{
    const ProgramFolder &folder = archives.folder();
    if (!archives.exists(archive))
        QFile::copy(folder.path(archiveTemplate.toString()), folder.path(archive));
    Result<Database> database = archives.open(archive, Database::Use::ThrowAway);
    Result<Statement> insert = database.value().prepare(insertion);
    (void)database.value().execute("BEGIN");
    for (const QStringList &row : rows) {
        for (int field = 0; field < insertion.count(u'?'); ++field)
            insert.value().bind(field + 1, row.value(field));
        if (!insert.value().step())
            qFatal("a row cannot be added");
        insert.value().reset();
    }
    (void)database.value().execute("COMMIT");
}

} // namespace

void TestFolder::addUsers(const QList<QStringList> &users)
{
    addRows(archives, QStringView(ArchiveName::Users).toString(), ArchiveName::UsersTemplate,
            u"INSERT INTO Utenti (Codice, Tipo, Cognome, Nome) VALUES (?,?,?,?)"_s, users);
}

void TestFolder::addEvents(const QString &day, const QList<QStringList> &events)
{
    addRows(
        archives, ArchiveName::events(day), ArchiveName::EventsTemplate,
        u"INSERT INTO Eventi (Codice, Tipo, Canale, AbCh, KorDis, Ora, Data, DataOrd) VALUES (?,?,?,?,?,?,'%1','%2')"_s
            .arg(day, DataOrdinabile(day)),
        events);
}

void TestFolder::setPassword(const QString &password, Passwords::Type type)
{
    Passwords passwords(archives);
    if (passwords.load() != Passwords::Fault::None || passwords.set(type, password) != Passwords::Fault::None)
        qFatal("no password");
}

Database TestFolder::hold(QStringView archive, const QByteArray &sql)
{
    Result<Database> database = archives.open(archive, Database::Use::Safe);
    if (!database || !database.value().execute(sql))
        qFatal("%s", sql.constData());
    return std::move(database.value());
}

QStringList TestFolder::rows(QStringView archive, const QString &statement)
{
    const auto fault = [](const Fault &f) { return QStringList{u"FAULT %1"_s.arg(int(f.code))}; };
    Result<Database> database = archives.open(archive, Database::Use::ThrowAway);
    if (!database)
        return fault(database.fault());
    QStringList rows;
    const Result<void> read = database.value().each(statement, {}, [&rows](const Statement &row) {
        QStringList cells;
        for (int column = 0; column < row.columnCount(); ++column)
            cells.append(row.text(column));
        rows.append(cells.join(QLatin1Char('|')));
    });
    return read ? rows : fault(read.fault());
}

QString asText(const Event &event)
{
    return QStringList{event.Codice, DataFile(event.Data), OraTesto(event.Ora),    typeText(event.Tipo),
                       event.Canale, markText(event.AbCh), markText(event.KorDis), DataOrdinabile(event.Data)}
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

Texts textsIn(int language)
{
    Texts texts;
    texts.fill(language);
    return texts;
}

QString english(const Message &message)
{
    return textsIn().sentence(message);
}

bool isRescued(ArchiveStore &archives, const QString &archive)
{
    Result<Database> database = archives.open(archive, Database::Use::Safe);
    return database && ReunitedDay::isBroughtInto(database.value()).value();
}

qsizetype waiting(const EventLog &log)
{
    const std::optional<Message> told = log.waits();
    return told ? told->arguments.value(0).toLongLong() : 0;
}

QStringList takeNotices(Notices &notices)
{
    QStringList sentences;
    while (!notices.isEmpty())
        sentences.append(english(notices.take().message));
    return sentences;
}
