#include "mainwindow/MenuState.h"

#include <QTest>

Q_DECLARE_METATYPE(MenuInput)

class TestMenu : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void states_data();
    void states();
};

void TestMenu::states_data()
{
    QTest::addColumn<MenuInput>("input");
    QTest::addColumn<QByteArray>("menus"); // File, Anagrafica, Consult, Strumenti, Help
    QTest::addColumn<QList<Entry>>("closed");
    QTest::addColumn<QList<Entry>>("open");
    const QList<Entry> passwords = {Entry::AttPass, Entry::AttPassUte, Entry::AttPassUty};
    const QList<Entry> some = {Entry::Exit, Entry::ImpCom, Entry::Utility, Entry::About};
    MenuInput input;
    QTest::newRow("nothing special") << input << QByteArray("xxxxx") << QList<Entry>() << some + passwords;
    input.gateIsClosed = true;
    QTest::newRow("gate") << input << QByteArray(".....") << some + passwords << QList<Entry>();
    input.passwordWindowIsOpen = true;
    QTest::newRow("gate, its window open") << input << QByteArray(".....") << some << QList<Entry>();
    input = {};
    input.portIsMissing = true;
    QTest::newRow("no port") << input << QByteArray(".....") << some + passwords << QList<Entry>();
    input.passwordWindowIsOpen = false;
    input.gateIsClosed = true;
    QTest::newRow("gate and no port") << input << QByteArray(".....") << some << QList<Entry>();
    input = {};
    input.passwordWindowIsOpen = true;
    QTest::newRow("password window") << input << QByteArray("x.xxx") << QList<Entry>() << some + passwords;
    input.diagnosticsAreAsked = true;
    QTest::newRow("diagnostics asked") << input << QByteArray("x.xxx") << QList{Entry::Utility} << passwords;
    input = {};
    input.registerIsOpen = true;
    QTest::newRow("register open") << input << QByteArray("xxxxx") << passwords + QList{Entry::RestoreUsers}
                                   << some + QList{Entry::Utenti};
    input = {};
    input.usersAreAsked = true;
    QTest::newRow("users asked") << input << QByteArray("xxxxx") << QList{Entry::Utenti, Entry::RestoreUsers} << some;
}

void TestMenu::states()
{
    QFETCH(MenuInput, input);
    QFETCH(QList<Entry>, closed);
    QFETCH(QList<Entry>, open);
    const MenuState state = menuState(input);
    QByteArray menus;
    for (const bool enabled : state.menus)
        menus += enabled ? 'x' : '.';
    QTEST(menus, "menus");
    for (const Entry entry : closed)
        QVERIFY2(!state[entry], QByteArray::number(int(entry)));
    for (const Entry entry : open)
        QVERIFY2(state[entry], QByteArray::number(int(entry)));
    // Below a disabled menu nothing can be reached by other ways.
    for (int entry = 0; entry < EntryCount; ++entry)
        QVERIFY(state[menuOf(Entry(entry))] || !state[Entry(entry)]);
}

QTEST_GUILESS_MAIN(TestMenu)
#include "tst_menu.moc"
