#include "mainwindow/MenuState.h"
#include "support/Fixtures.h"

class TestMenu : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void states_data()
    {
        using Entries = QList<Entry>;
        // Menus: File, Anagrafica, Consult, Strumenti, Help.
        const Rows<MenuInput, QByteArray, Entries, Entries> row("input", "menus", "closed", "open");
        const Entries passwords = {Entry::AttPass, Entry::AttPassUte, Entry::AttPassUty};
        const Entries some = {Entry::Exit, Entry::ImpCom, Entry::Utility, Entry::About};
        const auto with = [](std::initializer_list<bool MenuInput::*> flags) {
            MenuInput input;
            for (bool MenuInput::*flag : flags)
                input.*flag = true;
            return input;
        };
        constexpr auto gate = &MenuInput::gateIsClosed, noPort = &MenuInput::portIsMissing,
                       asks = &MenuInput::passwordWindowIsOpen, diagnostics = &MenuInput::diagnosticsAreAsked;
        row("nothing special", {}, "xxxxx", {}, some + passwords);
        row("gate", with({gate}), ".....", some + passwords, {});
        row("gate, its window open", with({gate, asks}), ".....", some, {});
        row("no port", with({noPort}), ".....", some + passwords, {});
        row("gate and no port", with({gate, noPort}), ".....", some, {});
        row("password window", with({asks}), "x.xxx", {}, some + passwords);
        row("diagnostics asked", with({asks, diagnostics}), "x.xxx", {Entry::Utility}, passwords);
        row("register open", with({&MenuInput::registerIsOpen}), "xxxxx", passwords, some);
    }
    void states()
    {
        QFETCH(MenuInput, input);
        QFETCH(QList<Entry>, closed);
        QFETCH(QList<Entry>, open);
        const MenuState state = menuState(input);
        QByteArray menus;
        for (const bool enabled : state.menus)
            menus += enabled ? 'x' : '.';
        QTEST(menus, "menus");
        for (const Entry entry : closed + open)
            QCOMPARE(state[entry], open.contains(entry));
        // Below a disabled menu nothing can be reached by other ways.
        for (int entry = 0; entry < EntryCount; ++entry)
            QVERIFY(state[menuOf(Entry(entry))] || !state[Entry(entry)]);
    }
};

QTEST_GUILESS_MAIN(TestMenu)
#include "tst_menu.moc"
