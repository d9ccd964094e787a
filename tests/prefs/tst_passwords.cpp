#include "prefs/Passwords.h"
#include "support/Fixtures.h"

class TestPasswords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void setAndAsk_data()
    {
        const Rows<QString, QStringList, QStringList> row("password", "right", "wrong");
        row("plain", u"apriti"_s, listOf("apriti,apriti   "), {u"Apriti"_s, u"apriti\t"_s, QString()});
        row("past ten characters", u"0123456789AB"_s, listOf("0123456789"), listOf("0123456789AB"));
        row("leading blanks are lost", u"  ab"_s, listOf("ab"), listOf("b"));
        row("every language's letters", u"\u00E0\u00DF\u20AC\u0153"_s, {u"\u00E0\u00DF\u20AC\u0153"_s}, listOf("a"));
        row("none", {}, {QString(), u"  "_s}, listOf("x"));
    }
    void setAndAsk()
    {
        QFETCH(QString, password);
        QFETCH(QStringList, right);
        QFETCH(QStringList, wrong);
        TestFolder test;
        QVERIFY(test.archives.copy(ArchiveName::UsersTemplate, ArchiveName::Users).ok());
        Passwords now(test.archives);
        QCOMPARE(now.load(), Passwords::Fault::None);
        QVERIFY(!now.isSet(Passwords::Type::Users));
        QCOMPARE(now.set(Passwords::Type::Users, password), Passwords::Fault::None);
        Passwords afterwards(test.archives);
        QCOMPARE(afterwards.load(), Passwords::Fault::None);
        for (const Passwords *passwords : {&now, &afterwards}) {
            QCOMPARE(passwords->isSet(Passwords::Type::Users), !password.isEmpty());
            QVERIFY(!passwords->isSet(Passwords::Type::Main) && !passwords->isSet(Passwords::Type::Diagnostics));
            for (const QString &typed : right)
                QVERIFY2(passwords->matches(Passwords::Type::Users, typed), qPrintable(typed));
            for (const QString &typed : wrong)
                QVERIFY2(!passwords->matches(Passwords::Type::Users, typed), qPrintable(typed));
        }
        QCOMPARE(Passwords::accepted(u"a\u20ACb\u4E16\u0153\u0101"_s), u"a\u20ACb\u0153"_s);
    }

    void faults()
    {
        using Told = Passwords::Fault;
        for (const auto &[sql, fault] : {std::pair("DELETE FROM Password", Told::Corrupt),
                                         {"UPDATE Password SET PassUtility='short'", Told::Corrupt},
                                         {"UPDATE Password SET PassProg='', PassUte=''", Told::None},
                                         {"DROP TABLE Password", Told::RegisterUnusable},
                                         {"", Told::RegisterUnusable}}) {
            TestFolder test;
            if (*sql && test.archives.copy(ArchiveName::UsersTemplate, ArchiveName::Users))
                test.execute(ArchiveName::Users, sql);
            QVERIFY2(Passwords(test.archives).load() == fault, sql);
        }
    }

    void lockedRegister()
    {
        TestFolder test;
        QVERIFY(test.archives.copy(ArchiveName::UsersTemplate, ArchiveName::Users).ok());
        Database other = test.hold(ArchiveName::Users);
        Passwords passwords(test.archives);
        QCOMPARE(passwords.load(), Passwords::Fault::Unreadable);
        QCOMPARE(passwords.reason().code, FaultCode::Locked);
        QCOMPARE(passwords.set(Passwords::Type::Main, u"x"_s), Passwords::Fault::Unreadable);
        QVERIFY(other.execute("COMMIT").ok());
        QCOMPARE(passwords.load(), Passwords::Fault::None);
    }
};

QTEST_GUILESS_MAIN(TestPasswords)
#include "tst_passwords.moc"
