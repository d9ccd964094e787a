// A list of 50,000 users, from the file into the register and out again, each figure beside the bare loop that it is
// measured against. Needs a window system (offscreen will do).

#include "Measure.h"

#include "support/FakeMessages.h"
#include "support/Fixtures.h"
#include "users/UserExport.h"
#include "users/frmImport.h"

#include <QApplication>
#include <QPushButton>

namespace {

constexpr int listed = 50'000;

QByteArray list()
{
    QByteArray all = "Code;Type;User Surname;User First name;Additional information\r\n";
    for (int user = 0; user < listed; ++user)
        all += QByteArray::number(100'000 + (user * 7919) % listed * 37) + ";TX;Surname " + QByteArray::number(user) +
               ";Name " + QByteArray::number(user % 997) + ";\r\n";
    return all;
}

/// Reads the file, and parts its lines.
double bareReading(const QString &path)
{
    return microseconds([&] {
        QFile file(path);
        (void)file.open(QIODevice::ReadOnly);
        volatile qsizetype fields = 0;
        for (const QByteArray &line : file.readAll().split('\n'))
            fields = fields + line.split(';').size();
    });
}

double bareInserting(TestFolder &test)
{
    (void)test.archives.copy(ArchiveName::Users, u"Archivi/bare.zeb");
    Result<Database> copy = test.archives.open(u"Archivi/bare.zeb", Database::Use::ThrowAway);
    return microseconds([&] {
        (void)copy.value().execute("BEGIN");
        Result<Statement> insert = copy.value().prepare(
            u"INSERT INTO Utenti (Codice, Tipo, Cognome, CodTronc) VALUES ('100000', 'TX', 'Surname', '00001')"_s);
        for (int i = 0; i < listed; ++i) {
            (void)insert.value().step();
            insert.value().reset();
        }
        (void)copy.value().execute("COMMIT");
        Result<Statement> rows = copy.value().prepare(u"SELECT * FROM Utenti ORDER BY Codice"_s);
        while (rows.value().step().value())
            ;
    });
}

double bareWriting(const QString &path, const QByteArray &content)
{
    return microseconds([&] {
        QFile file(path);
        (void)file.open(QIODevice::WriteOnly);
        file.write(content);
        file.flush();
        ::fsync(file.handle());
    });
}

/// Runs the event loop until @p done, and prints how long that took.
template<class Done>
void measure(const char *what, double bare, Done done)
{
    const Heartbeat heart;
    const double taken = microseconds([&] {
        while (!done())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    });
    print(what, taken / 1000, bare / 1000, "ms");
    std::printf("  longest gap %.0f ms\n", heart.longest());
}

} // namespace

int main(int argumentCount, char *arguments[])
{
    const QApplication application(argumentCount, arguments);
    TestFolder test;
    test.addUsers({});
    Texts texts;
    texts.fill(2);
    FakeMessages messages;
    UserRegister users(test.archives, [] { return Protocol::Wiegand26Site; });
    if (!users.begin() || !finish(*users.reading()))
        return 1;
    const QByteArray content = list();
    test.write(u"list.csv"_s, content);
    const QString path = test.directory.filePath(u"list.csv"_s);

    auto *window = new frmImport(texts, messages, users, path);
    bool isImported = false;
    QObject::connect(window, &frmImport::Chiudi, [&isImported](const QString &said) { isImported = !said.isEmpty(); });
    window->show();
    (void)window->open();
    auto *button = window->findChild<QPushButton *>(u"cmdImport"_s);
    measure("list read, dry run shown", bareReading(path), [button] { return button->isEnabled(); });
    // The bare loop, before the list stands in the register.
    const double bare = bareInserting(test);
    button->click();
    measure("imported", bare, [&isImported] { return isImported; });
    std::printf("  %lld users\n", static_cast<long long>(users.users().recordCount()));

    const QString out = test.directory.filePath(u"out.csv"_s);
    const UserExport wanted = {out, ';', Protocol::Wiegand26Site};
    const double writing = bareWriting(out, content);
    const std::unique_ptr<Task> task = wanted.task(test.disk, texts, UserRows(users.users()));
    measure("exported", writing, [&task] { return task->step(QDeadlineTimer(15)).value(); });
    return 0;
}
