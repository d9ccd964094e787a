#include "support/Fixtures.h"
#include "users/DuplicateReport.h"
#include "users/UserRegister.h"

namespace {

constexpr auto TX = CodeType::Transmitter;
constexpr auto DKS = CodeType::Keypad;
const QString all = u"SELECT Codice, Tipo, Cognome, Nome, CodTronc FROM Utenti ORDER BY Codice, Tipo"_s;

/// A register open to be edited. @param users  "code type surname name", a comma between them
struct Desk {
    explicit Desk(const QString &users, int protocol = 0)
        : edited(test.archives, [protocol] { return Protocol{protocol}; })
    {
        QList<QStringList> rows;
        for (const QString &user : users.split(u',', Qt::SkipEmptyParts))
            rows.append(user.split(u' '));
        test.addUsers(rows);
        if (!edited.begin() || !finish(*edited.reading()))
            qFatal("the register does not open");
    }
    /// All users, the current one between brackets.
    QString shown()
    {
        QStringList rows;
        const RecordSet &set = edited.users();
        for (qsizetype row = 0; row < set.recordCount(); ++row) {
            QStringList cells;
            for (int column : {0, 1, 2, 3})
                cells.append(set.value(row, column));
            const QString user = cells.join(u' ').trimmed();
            rows.append(row == set.position() ? u'[' + user + u']' : user);
        }
        return rows.join(u',');
    }
    QStringList names(const NameList &list)
    {
        QStringList names;
        for (const NameEntry &entry : list.entries())
            names.append(entry.text);
        return names;
    }
    QStringList stored(QStringView archive = ArchiveName::Users) { return test.rows(archive, all); }

    TestFolder test;
    UserRegister edited;
};

/// Runs a task in steps that are as short as can be. @return their number
int runThrough(Task &task)
{
    int steps = 1;
    for (; !task.step(QDeadlineTimer(0)).value(); ++steps)
        ;
    return steps;
}

} // namespace

class TestUsers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rows();
    void runs_data();
    void runs();
    void passwordsSurvive();
    void duplicates();
};

/// With the same code as a transmitter and as a keypad code, each change acts on its own row.
void TestUsers::rows()
{
    Desk desk(u"5 TX Rossi Ada,5 DKS rossini Bea,7 TX,9 TX \u00C9mile"_s);
    UserRegister &edited = desk.edited;
    QVERIFY(edited.contains(u"5"_s, DKS) && !edited.contains(u"7"_s, DKS) && !edited.isChanged());
    QCOMPARE(desk.names(edited.surnames()), (QStringList{u"\u00C9mile"_s, u"Rossi"_s, u"rossini"_s}));
    edited.users().moveTo(1);
    QVERIFY(edited.find(u"5"_s) && !edited.find(u"6"_s));
    QCOMPARE(desk.shown(), u"5 TX Rossi Ada,[5 DKS rossini Bea],7 TX,9 TX \u00C9mile"_s);
    const qint64 keypad = edited.users().rowId();
    edited.users().moveTo(3);
    QVERIFY(edited.setText(0, &User::Cognome, u"Zanibonetti Ma\U0001F600"_s).ok() && edited.isChanged());
    QVERIFY(edited.setText(2, &User::Nome, u"ada"_s).ok() && edited.setText(1, &User::Cognome, {}).ok());
    QCOMPARE(desk.shown(), u"5 TX Zanibonetti Ma Ada,5 DKS  Bea,7 TX  ada,[9 TX \u00C9mile]"_s);
    QCOMPARE(desk.names(edited.surnames()), (QStringList{u"\u00C9mile"_s, u"Zanibonetti Ma"_s}));
    QCOMPARE(desk.names(edited.firstNames()), listOf("Ada,ada,Bea"));
    QVERIFY(edited.changeCode(keypad, u"8"_s, DKS).ok() && edited.add(u"6"_s, TX).ok());
    QCOMPARE(desk.shown(), u"5 TX Zanibonetti Ma Ada,[6 TX],7 TX  ada,8 DKS  Bea,9 TX \u00C9mile"_s);
    QCOMPARE(edited.changes().text(), u"1,3,0"_s);
    edited.users().moveTo(3);
    QVERIFY(edited.remove() && edited.users().value(0) == u"9" && edited.remove());
    QCOMPARE(desk.shown(), u"5 TX Zanibonetti Ma Ada,6 TX,[7 TX  ada]"_s);
    QCOMPARE(desk.names(edited.surnames()).size() + desk.names(edited.firstNames()).size(), 3);
    for (int left = 3; left > 0; --left)
        QVERIFY(edited.remove().ok());
    QCOMPARE(edited.changes().text(), u"0,0,4"_s);
    QVERIFY(edited.users().isEmpty() && !edited.remove().ok() && !edited.find(u"7"_s));
}

void TestUsers::runs_data()
{
    const Rows<int, int, bool, QString, QString> row("first", "count", "isIncomplete", "firstAdded", "users");
    row("one is there", 100, 5, true, u"100"_s, u"[100 TX],101 TX,102 DKS Neri,103 TX,104 TX,99 TX"_s);
    row("all are there", 102, 1, true, QString(), u"102 DKS Neri,[99 TX]"_s);
    row("none is there", 251658235, 2, false, u"251658235"_s, u"102 DKS Neri,[251658235 TX],251658236 TX,99 TX"_s);
}

void TestUsers::runs()
{
    QFETCH(int, first);
    QFETCH(int, count);
    Desk desk(u"99 TX,102 DKS Neri"_s, 15);
    desk.edited.users().moveTo(1);
    {
        // Cut off in the middle, nothing stays of it.
        const auto cut = std::move(desk.edited.codeRun(500, 3).value());
        QVERIFY(!cut->step(QDeadlineTimer(0)).value());
    }
    const auto run = std::move(desk.edited.codeRun(first, count).value());
    QCOMPARE(runThrough(*run), count);
    desk.edited.codeRunEnded(run->added());
    QCOMPARE(desk.edited.changes().text(), u"%1,0,0"_s.arg(run->added().size()));
    QVERIFY(desk.edited.isChanged());
    QTEST(run->isIncomplete(), "isIncomplete");
    const QString firstAdded = run->added().value(0).code;
    QTEST(firstAdded, "firstAdded");
    QTEST(desk.shown(), "users");
    if (!firstAdded.isEmpty())
        QCOMPARE(desk.edited.users().value(u"CodTronc"_s), truncatedCode(firstAdded, Protocol::RsC));
    Desk closed(u"99 TX"_s, 15);
    closed.edited.discard();
    const auto none = closed.edited.codeRun(first, count);
    QVERIFY(!none && none.fault().code == FaultCode::NotOpen);
}

/// Passwords stand in the register as well, and are set while it is open.
void TestUsers::passwordsSurvive()
{
    Desk desk(u"5 TX Rossi Ada"_s);
    Passwords passwords(desk.test.archives);
    desk.test.setPassword(u"apriti"_s);
    // Those that cannot be read are not put back to what they were: nothing is saved, and the work stays.
    QVERIFY(desk.edited.add(u"6"_s, TX).ok());
    desk.test.execute(ArchiveName::Users, "CREATE TABLE Aside AS SELECT * FROM Password; DELETE FROM Password");
    const Result<void> refused = finish(*desk.edited.saving());
    QVERIFY(!refused && refused.fault().code == FaultCode::Damaged && desk.edited.isChanged());
    QCOMPARE(desk.stored().size(), 1);
    desk.test.execute(ArchiveName::Users, "INSERT INTO Password SELECT * FROM Aside; DROP TABLE Aside");
    // Given up between two pieces a save leaves the work where it is.
    QVERIFY(!desk.edited.saving()->step(QDeadlineTimer(0)).value());
    QVERIFY(finish(*desk.edited.saving()).ok());
    QVERIFY(passwords.load() == Passwords::Fault::None && passwords.matches(Passwords::Type::Main, u"apriti"_s));
    QCOMPARE(desk.stored().size(), 2);
    // Nor are those lost that are set between two turns of a save.
    QVERIFY(desk.edited.begin().ok() && finish(*desk.edited.reading()));
    const auto saving = desk.edited.saving();
    QVERIFY(!saving->step(QDeadlineTimer(0)).value() &&
            passwords.set(Passwords::Type::Users, u"otra"_s) == Passwords::Fault::None);
    QVERIFY(runThrough(*saving) > 1 && passwords.load() == Passwords::Fault::None);
    QVERIFY(passwords.matches(Passwords::Type::Users, u"otra"_s));
}

/// The whole file byte for byte; without duplicates there is none, and one that was there goes.
void TestUsers::duplicates()
{
    QByteArray found = "  TATS\xC4"
                       "CHLICHER CODE |     CODICE TRONCATO\r\n" +
                       QByteArray(42, '\xAD') + "\r\n";
    // Twenty that differ above their last five hexadecimal digits, in the order of their texts.
    QStringList codes;
    for (int i = 0; i < 20; ++i)
        codes.append(QString::number(9 + (i << 20)));
    const QString users = u"7 DKS,10 DKS,"_s + codes.join(u" TX,"_s) + u" TX"_s;
    codes.sort();
    for (const QString &code : std::as_const(codes))
        found += code.toLatin1().rightJustified(20) + " |" + QByteArray("00009").rightJustified(20) + "\r\n";
    for (const auto &[all, expected] : {std::pair(u"9 TX,2097162 TX,7 DKS"_s, QByteArray()), {users, found}}) {
        Desk desk(all, 15);
        const auto run = desk.edited.truncatedCodes();
        runThrough(*run);
        desk.test.write(u"RepDoppioni.txt"_s, "of an earlier run");
        DuplicateReport report(desk.edited.all(), desk.test.folder, u"Tats\u00E4chlicher Code"_s, u"Codice Troncato"_s);
        QCOMPARE(runThrough(report), qMax<qint64>(1, report.progress().count));
        QCOMPARE(report.isFound(), !expected.isEmpty());
        QCOMPARE(desk.test.files(), report.isFound() ? QStringList{u"RepDoppioni.txt"_s} : QStringList());
        QCOMPARE(desk.test.read(u"RepDoppioni.txt"_s), expected);
        if (report.isFound())
            QCOMPARE(report.text().section(u'\n', 1, 1), QString(42, u'-'));
        desk.test.disk.stopAt = 0;
        DuplicateReport stopped(desk.edited.all(), desk.test.folder, {}, {});
        QVERIFY(!stopped.step(QDeadlineTimer(QDeadlineTimer::Forever)).ok());
        QCOMPARE(desk.test.read(u"RepDoppioni.txt"_s), expected);
    }
}

QTEST_GUILESS_MAIN(TestUsers)
#include "tst_users.moc"
