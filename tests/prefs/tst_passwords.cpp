#include "archives/Tables.h"
#include "prefs/Passwords.h"
#include "support/Fixtures.h"

#include <QTest>

class TestPasswords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void setAndAsk_data();
    void setAndAsk();
    void faults_data();
    void faults();
    void lockedRegister();
};

void TestPasswords::setAndAsk_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<QStringList>("right");
    QTest::addColumn<QStringList>("wrong");
    QTest::newRow("plain") << u"apriti"_s << QStringList{u"apriti"_s, u"apriti   "_s}
                           << QStringList{u"Apriti"_s, u"apriti\t"_s, QString()};
    QTest::newRow("past ten characters") << u"0123456789AB"_s << QStringList{u"0123456789"_s}
                                         << QStringList{u"0123456789AB"_s};
    QTest::newRow("leading blanks are lost") << u"  ab"_s << QStringList{u"ab"_s} << QStringList{u"b"_s};
    QTest::newRow("every language's letters")
        << u"\u00E0\u00DF\u20AC\u0153"_s << QStringList{u"\u00E0\u00DF\u20AC\u0153"_s} << QStringList{u"a"_s};
    QTest::newRow("none") << QString() << QStringList{QString(), u"  "_s} << QStringList{u"x"_s};
}

void TestPasswords::setAndAsk()
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

void TestPasswords::faults_data()
{
    QTest::addColumn<QByteArray>("sql");
    QTest::addColumn<Passwords::Fault>("fault");
    QTest::newRow("no row") << QByteArray("DELETE FROM Password") << Passwords::Fault::Corrupt;
    QTest::newRow("no scrambled text") << QByteArray("UPDATE Password SET PassUtility='short'")
                                       << Passwords::Fault::Corrupt;
    QTest::newRow("empty means none") << QByteArray("UPDATE Password SET PassProg='', PassUte=''")
                                      << Passwords::Fault::None;
    QTest::newRow("no table") << QByteArray("DROP TABLE Password") << Passwords::Fault::RegisterUnusable;
    QTest::newRow("no register") << QByteArray() << Passwords::Fault::RegisterUnusable;
}

void TestPasswords::faults()
{
    QFETCH(QByteArray, sql);
    TestFolder test;
    if (!sql.isEmpty()) {
        QVERIFY(test.archives.copy(ArchiveName::UsersTemplate, ArchiveName::Users).ok());
        QVERIFY(test.archives.open(ArchiveName::Users, Database::Use::Safe).value().execute(sql).ok());
    }
    Passwords passwords(test.archives);
    QTEST(passwords.load(), "fault");
}

void TestPasswords::lockedRegister()
{
    TestFolder test;
    QVERIFY(test.archives.copy(ArchiveName::UsersTemplate, ArchiveName::Users).ok());
    Result<Database> other = test.archives.open(ArchiveName::Users, Database::Use::Safe);
    QVERIFY(other.value().execute("BEGIN EXCLUSIVE").ok());
    Passwords passwords(test.archives);
    QCOMPARE(passwords.load(), Passwords::Fault::Unreadable);
    QCOMPARE(passwords.reason().code, FaultCode::Locked);
    QCOMPARE(passwords.set(Passwords::Type::Main, u"x"_s), Passwords::Fault::Unreadable);
    QVERIFY(!passwords.isSet(Passwords::Type::Main));
    QVERIFY(other.value().execute("COMMIT").ok());
    QCOMPARE(passwords.load(), Passwords::Fault::None);
}

QTEST_GUILESS_MAIN(TestPasswords)
#include "tst_passwords.moc"
