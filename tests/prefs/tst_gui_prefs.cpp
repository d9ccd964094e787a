#include "prefs/frmInsPass.h"
#include "prefs/frmLingua.h"
#include "prefs/frmPassProg.h"
#include "prefs/frmTempochk.h"
#include "support/Windows.h"
#include "widgets/Twips.h"

namespace {

constexpr auto Users = Passwords::Type::Users;
const QString perche = u"perch\u00E9"_s;

/// What the windows stand on: settings with CHECK=60 and LINGUA=2, a register with a users password, English texts.
struct Desk : Office {
    Desk()
    {
        if (!settings.CreaImpostazioni(2) || !settings.read(2, notices) ||
            !test.archives.copy(ArchiveName::UsersTemplate, ArchiveName::Users) ||
            passwords.load() != Passwords::Fault::None || passwords.set(Users, perche) != Passwords::Fault::None)
            qFatal("the folder cannot be prepared");
        // As if the file had been changed since.
        settings.Lingua = 1;
    }
    template<class Told>
    static int number(Told value)
    {
        return static_cast<int>(value);
    }
    static int number(std::optional<int> value) { return value.value_or(-1); }
    /// Notes what a window tells.
    template<class Window, class... Told>
    Window *listen(Window *window, void (Window::*signal)(Told...), const char *name)
    {
        QObject::connect(window, signal, [this, name](Told... values) {
            heard += QLatin1String(name);
            ((heard += u' ' + QString::number(number(values))), ...);
        });
        return window;
    }
    /// A window by its name; what it tells is heard.
    ChildWindow *open(const QString &name)
    {
        if (name == u"frmTempochk")
            return listen(new frmTempochk(texts, settings, messages), &frmTempochk::ModificaMin, "minutes");
        if (name == u"frmLingua") {
            auto *window = new frmLingua(texts, settings, messages);
            QObject::connect(window, &frmLingua::LinguaCambiata, [this] { heard += texts[Text::Lingua]; });
            return window;
        }
        if (name == u"frmInsPass") {
            auto *window = new frmInsPass(texts, messages, passwords);
            window->setTipoPass(Users);
            return listen(window, &frmInsPass::PasswordImpostata, "set");
        }
        auto *window = new frmPassProg(texts, messages, passwords);
        window->setTipoPass(Users);
        window->DisattivaPW = name.endsWith(u"remove");
        return listen(window, &frmPassProg::Chiudi, "closed");
    }

    Passwords passwords{test.archives};
    QString heard;
};

/// One way through a window: what is typed into a box ("box=text") or clicked, the last key, and what comes of it.
struct Case {
    const char *name;
    QString window;
    QStringList input;
    Qt::Key key = Qt::Key_Return;
    QString heard = {};
    QString message = {};
    QString settings = u"CHECK=60 LINGUA=2"_s; ///< in the file afterwards
    QString password = perche;                 ///< afterwards
    bool diskWorks = true;
};

/// Types as a keyboard with dead keys does, each character composed, or clicks.
void enter(QWidget *window, const QString &input)
{
    if (auto *button = window->findChild<QAbstractButton *>(input))
        return button->click();
    auto *box = window->findChild<QLineEdit *>(input.section(u'=', 0, 0));
    box->clear();
    for (const QChar character : input.section(u'=', 1)) {
        QInputMethodEvent event;
        event.setCommitString(character);
        QCoreApplication::sendEvent(box, &event);
    }
}

} // namespace

class TestGuiPrefs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void outcomes_data()
    {
        const QString check = u"frmTempochk"_s, lingua = u"frmLingua"_s, ask = u"frmPassProg"_s, set = u"frmInsPass"_s;
        const QString askToRemove = u"frmPassProg to remove"_s, wrong = u"Critical: Wrong password!"_s;
        const QString range = u"Information: The minutes must be between 1 and 1440"_s;
        const QString typing = u"Exclamation: Attention! A password typing error has occured"_s;
        const QString notSaved = u"Exclamation: The setting 'CHECK' cannot be saved: read or write error"_s;
        const QString italian =
            u"Exclamation: Impossibile salvare l'impostazione 'LINGUA': errore di lettura o scrittura"_s;
        const QString same = u"CHECK=60 LINGUA=2"_s, digits = u"0123456789"_s;
        const QStringList right = {u"txtPass="_s + perche};
        const Qt::Key ok = Qt::Key_Return, esc = Qt::Key_Escape;
        const auto twice = [](const QString &a, const QString &b) {
            return QStringList{u"txtPass="_s + a, u"txtConfPass="_s + b};
        };
        // clang-format off
        const QList<Case> cases = {
            {"minutes", check, {u"txtMinuti=1a5"_s}, ok, u"minutes 15"_s, {}, u"CHECK=15 LINGUA=2"_s},
            {"too many", check, {u"txtMinuti=2000"_s}, Qt::Key_Enter, u"minutes 1440"_s, {}, u"CHECK=1440 LINGUA=2"_s},
            {"off", check, {u"chkAutomatico"_s}, ok, u"minutes 0"_s, {}, u"CHECK=0 LINGUA=2"_s},
            {"no minutes", check, {u"txtMinuti=0"_s}, ok, {}, range},
            {"check cancelled", check, {u"txtMinuti=5"_s}, esc, u"minutes -1"_s},
            {"check not saved", check, {u"txtMinuti=7"_s}, ok, u"minutes 7"_s, notSaved, same, perche, false},
            {"language", lingua, {u"optLingua(3)"_s}, ok, u"Sprache"_s, {}, u"CHECK=60 LINGUA=4"_s},
            {"language of the file", lingua, {}, ok, u"Language"_s, {}, same},
            {"language cancelled", lingua, {u"optLingua(3)"_s}, esc},
            {"language not saved", lingua, {u"optLingua(0)"_s}, ok, u"Lingua"_s, italian, same, perche, false},
            {"right", ask, right, ok, u"closed 2 1"_s},
            {"what cannot be stored is not typed", ask, {u"txtPass=\u0436"_s + perche}, ok, u"closed 2 1"_s},
            {"right, to remove it", askToRemove, right, ok, u"closed 2 3"_s},
            {"without its accent", ask, {u"txtPass=perche"_s}, ok, {}, wrong},
            {"nothing", askToRemove, {u"txtPass="_s}, ok, {}, wrong},
            {"set", set, twice(u"\u00E0 b"_s, u"\u00E0 b"_s), ok, u"set 2"_s, {}, same, u"\u00E0 b"_s},
            {"none", set, twice({}, {}), ok, u"set 2"_s, {}, same, QString()},
            {"not the same past ten", set, twice(digits + u'A', digits + u'B'), ok, {}, typing},
            {"setting cancelled", set, twice(u"a"_s, u"a"_s), esc},
        };
        // clang-format on
        QTest::addColumn<Case>("row");
        for (const Case &one : cases)
            QTest::newRow(one.name) << one;
    }
    void outcomes()
    {
        QFETCH(Case, row);
        Desk desk;
        QPointer window = desk.open(row.window);
        window->show();
        QVERIFY(!window->windowFlags().testFlag(Qt::Dialog) ||
                window->width() >= window->fontMetrics().horizontalAdvance(window->windowTitle()) + pixels(2250));
        for (const QString &input : row.input)
            enter(window, input);
        desk.test.disk.stopAt = row.diskWorks ? -1 : 0;
        QTest::keyClick(window->focusWidget(), row.key);
        if (row.heard.isEmpty() && row.key != Qt::Key_Escape) {
            QTRY_VERIFY(!desk.messages.shown.isEmpty());
            auto *faulty = window->findChild<QLineEdit *>(row.input[0].section(u'=', 0, 0));
            QCOMPARE(window->focusWidget(), faulty);
            QCOMPARE(faulty->selectedText().size(), faulty->text().size());
            QVERIFY(window->isVisible());
            window->unload();
        }
        QTRY_VERIFY(!window);
        QCOMPARE(desk.messages.take().join(u'|'), row.message);
        QCOMPARE(desk.heard, row.heard);
        QCOMPARE(u"CHECK=%1 LINGUA=%2"_s.arg(desk.settings.LeggiImpostazione(u"CHECK"_s),
                                             desk.settings.LeggiImpostazione(u"LINGUA"_s)),
                 row.settings);
        QCOMPARE(desk.passwords.load(), Passwords::Fault::None);
        QVERIFY(desk.passwords.matches(Users, row.password));
    }

    void passwordNotStored()
    {
        Desk desk;
        const std::unique_ptr<ChildWindow> window(desk.open(u"frmInsPass"_s));
        window->show();
        enter(window.get(), u"txtPass=abc"_s);
        enter(window.get(), u"txtConfPass=abc"_s);
        {
            Database other = desk.test.hold(ArchiveName::Users);
            enter(window.get(), u"cmdOk"_s);
            QVERIFY(other.execute("DELETE FROM Password").ok() && other.execute("COMMIT").ok());
        }
        enter(window.get(), u"cmdOk"_s);
        QVERIFY(QFile::remove(desk.test.folder.path(QStringView(ArchiveName::Users).toString())));
        enter(window.get(), u"cmdOk"_s);
        QCOMPARE(desk.messages.take(),
                 (QStringList{u"Critical: The users register 'Archivi/Anagrafico.zeb' cannot be read: "
                              "locked by another program"_s,
                              u"Critical: Corrupt File Password!"_s,
                              u"Critical: "_s + desk.texts[Text::FileMancanteODanneggiato]}));
        QVERIFY(desk.heard.isEmpty() && window->isVisible() && desk.passwords.matches(Users, perche));
        QCOMPARE(window->findChild<QLineEdit *>(u"txtConfPass"_s)->text(), u"abc"_s);
    }
};

QTEST_MAIN(TestGuiPrefs)
#include "tst_gui_prefs.moc"
