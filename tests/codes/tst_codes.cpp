#include "codes/CodeRules.h"
#include "codes/UserDirectory.h"
#include "platform/SortInTurns.h"
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
        names.append(user.Codice + u' ' + typeText(user.Tipo));
    }
    return names;
}

QString nameOf(const User *user)
{
    return user ? user->Cognome + u'/' + user->Nome : u"-"_s;
}

/// The name of the row, which is what is tested.
QString tag()
{
    return QString::fromLatin1(QTest::currentDataTag());
}

} // namespace

class TestCodes : public QObject
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
            QCOMPARE(nameOf(users.find(u"7"_s, CodeType::Transmitter)) + nameOf(users.find(u"7"_s, CodeType::Keypad)),
                     u"rossi/BeaRossi/Ada"_s);
            QCOMPARE(nameOf(users.find(u"5"_s, CodeType::Transmitter)) + nameOf(users.find(u"5"_s, {})), u"/Ada-"_s);
            QCOMPARE(nameOf(users.findCode(u"7"_s)) + nameOf(users.findCode(u"5"_s)), u"rossi/BeaNeri/Ada"_s);
            QCOMPARE(users.nearest(u"5"_s, {}).Cognome + users.nearest(u"7"_s, CodeType::Keypad).Cognome,
                     u"NeriRossi"_s);
            QVERIFY(!users.findCode(u"6"_s) && !users.contains(u"6"_s) &&
                    users.nearest(u"6"_s, CodeType::Transmitter).Nome.isEmpty());
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
            QCOMPARE(codeOf(isRead), code);
            QVERIFY(isRead || isRead.fault().subject == test.folder.path(u"Archivi/Anagrafico.zeb"_s));
            QCOMPARE(int(users.users().size()), count);
            QVERIFY(users.isKnown() && users.step(QDeadlineTimer(0)).fault().code == FaultCode::NotOpen);
        }
    }

    void truncated_data()
    {
        const Rows<int, QString> row("protocol", "expected");
        row("16777215", 1, {});
        row("16777216", 1, u"6777216"_s);
        row("100000001", 1, u"00000001"_s);
        row("123456789", 1, u"3456789"_s);
        row("65535", 3, {});
        row("65536", 3, u"5536"_s);
        row("123456", 4, u"23456"_s);
        row("524288", 7, u"24288"_s);
        row("1524287", 8, u"524287"_s);
        row("100000000", 10, u"00000000"_s);
        row("", 15, u"00000"_s);
        row("1234567", 15, u"2D687"_s);
        row("1048576", 15, u"00000"_s);
    }
    void truncated()
    {
        QFETCH(int, protocol);
        QTEST(truncatedCode(tag(), Protocol{protocol}), "expected");
        QVERIFY(hasTruncatedCodes(Protocol{protocol}));
        for (int carriesAll : {0, 2, 5, 6, 9, 11, 12, 13, 14, 16, -1})
            QCOMPARE(truncatedCode(u"251658239"_s, Protocol{carriesAll}), QString());
    }

    /// However many there are, in steps as short as can be; equals stay in their order.
    void manyNames()
    {
        const auto less = [](const std::pair<int, int> &a, const std::pair<int, int> &b) { return a.first < b.first; };
        for (const int count : {0, 1, 512, 513, 1024, 1500, 4100}) {
            SortInTurns<std::pair<int, int>, decltype(less)> sort(less);
            std::vector<std::pair<int, int>> expected;
            for (int i = 0; i < count; ++i) {
                expected.emplace_back(i * 7919 % 997, i);
                sort.add(expected.back());
            }
            std::stable_sort(expected.begin(), expected.end(), less);
            int steps = 1;
            for (; !sort.step(QDeadlineTimer(0)); ++steps) {
            }
            QVERIFY(steps >= count / 512 && sort.take() == expected);
        }
    }
};

QTEST_GUILESS_MAIN(TestCodes)
#include "tst_codes.moc"
