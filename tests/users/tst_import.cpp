#include "platform/Windows1252.h"
#include "support/Fixtures.h"
#include "users/ImportReport.h"
#include "users/UserExport.h"
#include "users/UserLines.h"
#include "users/UserRegister.h"

#include <QLocale>
#include <QRandomGenerator>

namespace {

constexpr auto protocol = Protocol::Wiegand26Site;

/// "; utf8 header 0,1,2,3,4"
QString asText(const ImportFormat &format)
{
    QStringList places;
    for (const int place : format.columns)
        places.append(QString::number(place));
    return u"%1 %2 %3 "_s.arg(format.separator == '\t' ? u"tab"_s : QString(QLatin1Char(format.separator)),
                              format.encoding == TextEncoding::Utf8 ? u"utf8"_s : u"1252"_s,
                              format.hasHeader ? u"header"_s : u"order"_s) +
           places.join(u',');
}

/// A register of users, and what a file would make of it.
struct Importing {
    explicit Importing(const QList<QStringList> &registered = {})
    {
        test.addUsers(registered);
        if (!users.begin() || !finish(*users.reading()))
            qFatal("no register");
    }
    ImportCheck &check(const QByteArray &content, ImportChoices choices = {})
    {
        choices.format = recognisedFormat(content, QByteArrayView(content).isValidUtf8());
        checked = std::make_unique<ImportCheck>(content, choices, UserRows(users.users()));
        if (!finish(*checked))
            qFatal("cannot be read");
        return *checked;
    }
    /// "number outcome reason code type surname first notes" of each line.
    QStringList lines() const
    {
        QStringList all;
        for (const ImportLine &line : checked->lines()) {
            QStringList words = {QString::number(line.number), outcomeText(texts, line.outcome),
                                 reasonText(texts, line)};
            words.append(QStringList(line.fields.begin(), line.fields.end()));
            all.append(words.join(u'|'));
        }
        return all;
    }
    void import()
    {
        const auto task = std::move(users.importing(checked->lines()).value());
        QVERIFY(finish(*task).ok());
    }
    QByteArray exported(char separator)
    {
        const UserExport wanted = {test.directory.filePath(u"list.csv"_s), separator, protocol};
        if (!finish(*wanted.task(test.disk, texts, UserRows(users.users()))))
            qFatal("cannot be written");
        return test.read(u"list.csv"_s);
    }

    TestFolder test;
    const Texts texts = textsIn();
    UserRegister users{test.archives, [] { return protocol; }};
    std::unique_ptr<ImportCheck> checked;
};

QByteArray withoutMark(const QByteArray &file)
{
    return file.sliced(QByteArrayView(CsvWriter::ByteOrderMark).size());
}

} // namespace

class TestImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void formats_data();
    void formats();
    void lines_data();
    void lines();
    void choices();
    void refusedAgain();
    void roundTrips();
    void allOrNone();
    void savedUsers();
};

void TestImport::formats_data()
{
    const Rows<QByteArray, QString> row("content", "format");
    row("our own, Italian", "Codice;Tipo;Cognome Utente;Nome Utente;Informazioni Aggiuntive;Codice Troncato\r\n",
        u"; utf8 header 0,1,2,3,4"_s);
    row("German, other order", "Vorname,NACHNAME,code\nMario,Rossi,5\n", u", utf8 header 2,-1,1,0,-1"_s);
    row("French, old encoding", "Nom utilisateur\tPr\xE9nom utilisateur\tCode\tInformations suppl\xE9mentaires\n",
        u"tab 1252 header 2,-1,0,1,3"_s);
    row("words beside boxes", "surname: ; First name:;Code\n", u"; utf8 header 2,-1,0,1,-1"_s);
    row("headings without a code", "Surname;First name\n1;2\n", u"; utf8 order 0,1,-1,-1,-1"_s);
    row("by order", "5;TX;Rossi\n", u"; utf8 order 0,1,2,-1,-1"_s);
    row("commas within texts", "5;TX;Rossi, Mario;x\n6;TX;Verdi;y\n7;TX;Neri, A, B;z\n", u"; utf8 order 0,1,2,3,-1"_s);
    row("separators within quotes", "5,\"a;b;c\",\"d\te\"\n6,\"f;g;h\",i\n", u", utf8 order 0,1,2,-1,-1"_s);
    row("the file tells", "SEP=,\r\nTipo,a;b,Codice\r\n", u", utf8 header 2,0,-1,-1,-1"_s);
    row("codes alone", "5\n6\n", u"; utf8 order 0,-1,-1,-1,-1"_s);
    row("empty", "", u"; utf8 order -1,-1,-1,-1,-1"_s);
}

void TestImport::formats()
{
    QFETCH(const QByteArray, content);
    QTEST(asText(recognisedFormat(content, QByteArrayView(content).isValidUtf8())), "format");
}

void TestImport::lines_data()
{
    const Rows<QByteArray, QStringList> row("content", "lines");
    const auto line = [](const char *text) { return QStringList{QString::fromUtf8(text)}; };
    row("new", "7;TX;Verdi;Bea;note\n", line("1|new||7|TX|Verdi|Bea|note"));
    row("below a line that tells the separator", "sep=;\n7;TX;a\n", line("2|new||7|TX|a||"));
    row("new without a type", "0007;;;;\n", line("1|new||7|TX|||"));
    row("unchanged", "Code;User Surname\n5;Rossi\n", line("2|unchanged||5|TX|Rossi|Mario|"));
    row("changed, other fields stay", "Code;User Surname\n5;Bianchi\n", line("2|name changed||5|TX|Bianchi|Mario|"));
    row("the same code of the other type is another user", "5; dks ;Rossi;Mario;\n",
        line("1|unchanged||5|DKS|Rossi|Mario|"));
    row("no code", "  ;TX;a\n", line("1|refused|no code|  |TX|a||").replaceInStrings(u"|  |"_s, u"||"_s));
    row("shown by a spreadsheet", "77.00;TX;a\n1,23E+08;TX;b\n;; \n000000077;tx;c\n;;;\n",
        {u"1|refused|the code is not made of digits|77.00|TX|a||"_s,
         u"2|refused|code rounded by a spreadsheet|1,23E+08|TX|b||"_s, u"4|new||77|TX|c||"_s});
    row("zero", "0;TX;a\n", line("1|refused|code out of range for its type|0|TX|a||"));
    row("highest transmitter", "251658239;TX;a\n", line("1|new||251658239|TX|a||"));
    row("above", "251658240;TX;a\n", line("1|refused|code out of range for its type|251658240|TX|a||"));
    row("above for a keypad", "1000000;DKS;a\n", line("1|refused|code out of range for its type|1000000|DKS|a||"));
    row("far above", "99999999999999999999;TX;a\n",
        line("1|refused|code out of range for its type|99999999999999999999|TX|a||"));
    row("type", "7;TY;a\n", line("1|refused|type other than TX and DKS|7|TY|a||"));
    row("double", "7;TX;a\n\n07;TX;b\n7;DKS;c\n",
        {u"1|new||7|TX|a||"_s, u"3|refused|already on line 1|07|TX|b||"_s, u"4|new||7|DKS|c||"_s});
    row("a refused line leaves its code", "7;TX;1234567890123456\n7;TX;b\n",
        {u"1|refused|text of more than 15 characters|7|TX|1234567890123456||"_s, u"2|new||7|TX|b||"_s});
    row("fifteen letters in two parts", QString(u"7;TX;e\u0301bcdefghijklmno\n"_s).toUtf8(),
        {u"1|new||7|TX|\u00E9bcdefghijklmno||"_s});
    row("name of another", "7;TX;ROSSI;mario\n8;TX;x\n9;TX;x\n",
        {u"1|new|same name as code 5|7|TX|ROSSI|mario|"_s, u"2|new||8|TX|x||"_s,
         u"3|new|same name as code 8|9|TX|x||"_s});
    row("own name, of both types", "5;TX;Rossi;Mario;x\n", line("1|name changed||5|TX|Rossi|Mario|x"));
    row("nobody's name", "7;TX;;\n8;TX;;\n", {u"1|new||7|TX|||"_s, u"2|new||8|TX|||"_s});
    row("guard, fewer fields", "7;TX;'=1+1\n8\n", {u"1|new||7|TX|=1+1||"_s, u"2|new||8|TX|||"_s});
    row("old encoding", "7;TX;M\xFCller\n", {u"1|new||7|TX|Müller||"_s});
}

void TestImport::lines()
{
    QFETCH(const QByteArray, content);
    static Importing desk({listOf("5,TX,Rossi,Mario"), listOf("5,DKS,Rossi,Mario")});
    (void)desk.check(content);
    QTEST(desk.lines(), "lines");
    QCOMPARE(desk.checked->refused().size(), desk.checked->count(ImportOutcome::Refused));
}

/// Whose names count, and what becomes of long texts.
void TestImport::choices()
{
    const QByteArray content = "5;TX;Bianchi;;12345678901234567\n6;TX;12345678901234567;;\n";
    Importing desk({listOf("5,TX,Rossi,Mario")});
    ImportChoices choices;
    choices.shortens = true;
    (void)desk.check(content, choices);
    QCOMPARE(desk.lines(), (QStringList{u"1|name changed|text shortened|5|TX|Bianchi||123456789012345"_s,
                                        u"2|new|text shortened|6|TX|123456789012345||"_s}));
    QCOMPARE(desk.checked->marked(), 2);
    choices.keepsNames = true;
    (void)desk.check(content, choices);
    QCOMPARE(desk.lines(),
             (QStringList{u"1|unchanged||5|TX|Rossi|Mario|"_s, u"2|new|text shortened|6|TX|123456789012345||"_s}));
    desk.import();
    QVERIFY(desk.users.isChanged());
    QCOMPARE(desk.exported(',').split('\n').mid(1).join(), "5,TX,Rossi,Mario,,\r6,TX,123456789012345,,,\r");
    QCOMPARE(desk.users.surnames().entries().size(), 2);
}

/// What was refused is written so that it can be mended and imported again.
void TestImport::refusedAgain()
{
    Importing desk;
    ImportCheck &check = desk.check("Code,User Surname,Type\n=7,\"a;\"\"b\"\"\",TX\n8,x,TX\n9,'-y,TY\n");
    const QString target = desk.test.directory.filePath(u"refused.csv"_s);
    QVERIFY(finish(*refusedFile(desk.test.disk, target, desk.texts, ';', check)).ok());
    QByteArray file = withoutMark(desk.test.read(u"refused.csv"_s));
    QCOMPARE(file, "Code;Type;User Surname;User First name;Additional information;Line;Reason\r\n"
                   "'=7;TX;\"a;\"\"b\"\"\";;;2;the code is not made of digits\r\n"
                   "9;TY;'-y;;;4;type other than TX and DKS\r\n");
    (void)desk.check(file.replace("'=7", "7").replace("TY", "dks"));
    QVERIFY(fieldSeparator(QLocale(QLocale::Italian)) == ';' && fieldSeparator(QLocale(QLocale::English)) == ',');
    QCOMPARE(desk.lines(), (QStringList{u"2|new||7|TX|a;\"b\"||"_s, u"3|new||9|DKS|-y||"_s}));
}

/// A list that is exported, imported into an empty register and exported again is the same file.
void TestImport::roundTrips()
{
    QRandomGenerator random(3);
    const QString letters = u"aB1 ;,\t\"'=+-@\r\nèß€ñ"_s;
    const auto text = [&] {
        QString made;
        for (int length = random.bounded(9); length > 0; --length)
            made += letters[random.bounded(static_cast<int>(letters.size()))];
        return made;
    };
    for (int round = 0; round < 4; ++round) {
        Importing first;
        const char separator = ";,"[round % 2];
        for (int user = 0; user < 150; ++user) {
            const bool isKeypad = random.bounded(2) == 0;
            const int code = random.bounded(1, random.bounded(2) == 0 ? 200 : HighestKeypadCode + 1);
            const CodeType type = isKeypad ? CodeType::Keypad : CodeType::Transmitter;
            if (first.users.contains(QString::number(code), type))
                continue;
            QVERIFY(first.users.add(QString::number(code), type).ok());
            for (QString User::*field : {&User::Cognome, &User::Nome, &User::Note})
                QVERIFY(first.users.setText(first.users.users().position(), field, text()).ok());
        }
        QVERIFY(finish(*first.users.saving()) && first.users.begin() && finish(*first.users.reading()));
        const QByteArray file = first.exported(separator);
        Importing second;
        (void)second.check(withoutMark(file));
        QCOMPARE(second.checked->count(ImportOutcome::New), first.users.users().recordCount());
        second.import();
        QCOMPARE(second.exported(separator), file);
    }
}

/// One that goes in the middle, or cannot be made to stand, leaves no trace.
void TestImport::allOrNone()
{
    Importing desk({listOf("5,TX,Rossi,Mario")});
    (void)desk.check("5;TX;Bianchi\n6;TX;a\n7;TX;b\n");
    auto task = std::move(desk.users.importing(desk.checked->lines()).value());
    QVERIFY(!task->step(QDeadlineTimer(0)).value() && task->progress().done == 1);
    task.reset();
    QVERIFY(!desk.users.isChanged() && desk.users.begin() && finish(*desk.users.reading()));
    {
        const Database reader = desk.test.hold(ArchiveName::UsersCopy, "BEGIN; SELECT * FROM Utenti");
        task = std::move(desk.users.importing(desk.checked->lines()).value());
        QCOMPARE(finish(*task).fault().code, FaultCode::Locked);
        task.reset();
    }
    QVERIFY(!desk.users.isChanged());
    QCOMPARE(desk.exported(','), "\xEF\xBB\xBF"
                                 "Code,Type,User Surname,User First name,Additional information,"
                                 "Truncated code\r\n5,TX,Rossi,Mario,,\r\n");
    desk.import();
    QCOMPARE(desk.users.users().recordCount(), 3);
    desk.users.discard();
    QCOMPARE(desk.users.importing({}).fault().code, FaultCode::NotOpen);
}

/// The register as it is saved, in the order of its window, whatever is being changed.
void TestImport::savedUsers()
{
    Importing desk({listOf("70007,TX,b"), listOf("5,TX,a")});
    QVERIFY(desk.users.remove().ok());
    SavedUsers saved(desk.test.archives);
    QVERIFY(finish(saved).ok());
    const UserRows rows = saved.users();
    QCOMPARE(rows.count(), 2);
    QVERIFY(rows[0].Codice == u"5" && rows[1].Cognome == u"b");
}

QTEST_GUILESS_MAIN(TestImport)
#include "tst_import.moc"
