#include "codes/UserDirectory.h"
#include "support/Fixtures.h"

namespace {

constexpr auto copyName = u"Archivi/AnaCon.zeb";

/// Users in an order that is neither that of their codes nor of their names.
void fill(TestFolder &test)
{
    test.addUsers({listOf("7,TX,rossi,Bea"),
                   listOf("5,DKS,Neri,Ada"),
                   listOf("7,DKS,Rossi,Ada"),
                   {u"5"_s, u"TX"_s, {}, u"Ada"_s}});
}

QStringList names(const UserDirectory &users, QString User::*name)
{
    NameSort sort = users.names(name);
    while (!sort.step(QDeadlineTimer(0)).value()) {
    }
    QStringList names;
    const QList<NameEntry> entries = sort.take();
    for (const NameEntry &entry : entries) {
        const User &user = users.users()[entry.id];
        names.append(user.Codice + u' ' + user.Tipo);
    }
    return names;
}

QString nameOf(const User *user)
{
    return user ? user->Cognome + u'/' + user->Nome : u"-"_s;
}

} // namespace

class TestDirectory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// The same whether it is read at once or in turns of one user each.
    void lookUp()
    {
        TestFolder test;
        fill(test);
        for (const bool inTurns : {false, true}) {
            QVERIFY(!test.archives.exists(copyName));
            UserDirectory users(test.archives, copyName,
                                inTurns ? UserDirectory::Copy::Kept : UserDirectory::Copy::Removed);
            if (inTurns) {
                QVERIFY(users.begin().ok());
                int turns = 1;
                for (; !users.step(QDeadlineTimer(0)).value(); ++turns)
                    QVERIFY(!users.isKnown() && !users.contains(u"5"_s));
                QVERIFY(turns >= users.users().size());
            } else {
                QVERIFY(users.open().ok());
            }
            QVERIFY(users.isKnown() && test.archives.exists(copyName));
            QCOMPARE(nameOf(users.find(u"7"_s, u"TX"_s)) + nameOf(users.find(u"7"_s, u"DKS"_s)),
                     u"rossi/BeaRossi/Ada"_s);
            QCOMPARE(nameOf(users.find(u"5"_s, u"TX"_s)) + nameOf(users.find(u"5"_s, {})), u"/Ada-"_s);
            QCOMPARE(nameOf(users.findCode(u"7"_s)) + nameOf(users.findCode(u"5"_s)), u"rossi/BeaNeri/Ada"_s);
            QCOMPARE(users.nearest(u"5"_s, u"??"_s).Cognome + users.nearest(u"7"_s, u"DKS"_s).Cognome, u"NeriRossi"_s);
            QVERIFY(!users.findCode(u"6"_s) && !users.contains(u"6"_s) &&
                    users.nearest(u"6"_s, u"TX"_s).Nome.isEmpty());
            QCOMPARE(names(users, &User::Cognome), listOf("5 DKS,7 TX,7 DKS"));
            QCOMPARE(names(users, &User::Nome), listOf("5 DKS,5 TX,7 DKS,7 TX"));
            users.forget();
            QVERIFY(!users.isKnown() && users.contains(u"5"_s));
        }
        QVERIFY(test.archives.exists(copyName));
    }

    /// The users known before stay, and what is told is the fault of the register, not of its copy.
    void faults()
    {
        for (const auto &[what, code, count] : {std::tuple(u"disk"_s, -1, 4),
                                                {u"copy"_s, -1, 4},
                                                {u"register"_s, int(FaultCode::Damaged), 1},
                                                {u"missing"_s, int(FaultCode::NotFound), 1},
                                                {u"locked"_s, int(FaultCode::Locked), 1}}) {
            TestFolder test;
            test.addUsers({listOf("1,TX,Verdi")});
            UserDirectory users(test.archives, copyName);
            QVERIFY(users.open() && test.archives.remove(ArchiveName::Users));
            fill(test);
            std::optional<Database> other;
            if (what == u"disk")
                test.disk.stopAt = 0;
            else if (what == u"register")
                test.write(u"Archivi/Anagrafico.zeb"_s, QByteArray(8192, 'x'));
            else if (what == u"missing")
                QVERIFY(test.archives.remove(ArchiveName::Users).ok());
            else if (what == u"locked")
                other = test.hold(ArchiveName::Users, "BEGIN EXCLUSIVE; DELETE FROM Utenti");
            const Result<void> read = users.begin();
            if (what == u"copy")
                test.execute(copyName, "DROP TABLE Utenti");
            Result<bool> isRead = read ? Result<bool>(false) : Result<bool>(read.fault());
            while (isRead && !isRead.value())
                isRead = users.step(QDeadlineTimer(0));
            QCOMPARE(isRead ? -1 : int(isRead.fault().code), code);
            QVERIFY(isRead || isRead.fault().subject == test.folder.path(u"Archivi/Anagrafico.zeb"_s));
            QCOMPARE(int(users.users().size()), count);
            QVERIFY(users.isKnown() && users.step(QDeadlineTimer(0)).fault().code == FaultCode::NotOpen);
        }
    }
};

QTEST_GUILESS_MAIN(TestDirectory)
#include "tst_directory.moc"
