#include "support/Desk.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>

namespace {

const QByteArray list = "Cognome Utente;Nome Utente;Codice;Tipo\r\n"
                        "Bianchi;Mario;1;TX\r\n"
                        "M\xFCller;Eva;70005;TX\r\n"
                        "Neri;Al;7x;TX\r\n";

/// The program, with a list of users beside its folder.
struct ImportDesk : Desk {
    ImportDesk()
    {
        goOnLine();
        write("list.csv", list);
    }
    QString path(const char *name) const { return files.filePath(QString::fromLatin1(name)); }
    void write(const char *name, const QByteArray &content) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }
    QByteArray read(const char *name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
    }
    /// In the dialog that stands over the main window, or over a window.
    void chooseFile(const char *name, QWidget *over = nullptr)
    {
        auto *dialog = (over ? over : &window)->findChild<QFileDialog *>(u"ComDial"_s);
        QVERIFY(dialog && dialog->isVisible());
        control<QLineEdit>(dialog, u"fileNameEdit"_s)->setText(path(name));
        const auto button =
            dialog->acceptMode() == QFileDialog::AcceptSave ? QDialogButtonBox::Save : QDialogButtonBox::Open;
        dialog->findChild<QDialogButtonBox *>()->button(button)->click();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void import(const char *name)
    {
        entry("mnuImportUsers")->trigger();
        chooseFile(name);
    }
    ChildWindow *dry() { return open("frmImport"); }
    ChildWindow *users() { return open("frmLstUtenti"); }
    QString counts() { return control<QLabel>(dry(), u"lblCounts"_s)->text().simplified(); }
    QStringList lines(QWidget *of, const char *grid)
    {
        const auto *view = control<QTableView>(of, QString::fromLatin1(grid));
        QStringList all;
        for (int row = 0; row < view->model()->rowCount(); ++row)
            all.append(cells(view, row));
        return all;
    }
    void choose(const char *box, int place)
    {
        control<QComboBox>(dry(), QString::fromLatin1(box))->setCurrentIndex(place);
    }

    QTemporaryDir files;
};

const QString counted = u"New: 1 Names changed: 1 Unchanged: 0 Refused: 1 To be looked at: 0"_s;

} // namespace

class TestGuiImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wholeWay();
    void recognised();
    void unreadable_data();
    void unreadable();
    void ends();
};

/// From the menu to the saved register and out again, while events come in.
void TestGuiImport::wholeWay()
{
    ImportDesk desk;
    QVERIFY(desk.program.passwords().set(Passwords::Type::Users, u"otra"_s) == Passwords::Fault::None);
    desk.entry("mnuImportUsers")->trigger();
    QVERIFY(desk.open("frmPassProg") && !desk.window.findChild<QFileDialog *>());
    desk.open("frmPassProg")->findChild<QLineEdit *>(u"txtPass"_s)->setText(u"otra"_s);
    desk.click(desk.open("frmPassProg"), "cmdOk");
    QTRY_VERIFY(desk.window.findChild<QFileDialog *>());
    desk.chooseFile("list.csv");
    QTRY_VERIFY(desk.dry());
    QTRY_COMPARE(desk.counts(), counted);
    QVERIFY(!desk.users()->isEnabled());
    QCOMPARE(desk.lines(desk.dry(), "dbgrdRighe"),
             (QStringList{u"2|name changed||1|TX|Bianchi|Mario|"_s, u"3|new||70005|TX|Müller|Eva|"_s,
                          u"4|refused|the code is not made of digits|7x|TX|Neri|Al|"_s}));

    // While its box is open the register takes no other import.
    desk.entry("mnuImportUsers")->trigger();
    QVERIFY(!desk.window.findChild<QFileDialog *>());
    desk.click(desk.dry(), "chkOnlyRefused");
    QCOMPARE(desk.lines(desk.dry(), "dbgrdRighe").size(), 1);
    desk.click(desk.dry(), "cmdSaveRefused");
    desk.chooseFile("refused", desk.dry());
    QTRY_VERIFY(desk.dry()->isEnabled() && desk.read("refused.csv").contains(";Neri;Al;;4;the code is not"));

    desk.click(desk.dry(), "cmdImport");
    QTRY_VERIFY(!desk.dry() && desk.users()->isEnabled());
    QCOMPARE(control<QLabel>(desk.users(), u"lblMessage"_s)->text(),
             u"Imported: 1 new, 1 names changed. They count only after SAVE."_s);
    QCOMPARE(desk.lines(desk.users(), "dbgrdDati").size(), 2);
    const QString saved = u"SELECT Codice, Cognome FROM Utenti ORDER BY Codice"_s;
    QCOMPARE(desk.test.rows(ArchiveName::Users, saved), QStringList{u"1|Rossi"_s});

    // The window's list goes out, not the one on the disk.
    desk.entry("mnuExportUsers")->trigger();
    desk.chooseFile("out.csv");
    QTRY_COMPARE(desk.messages.shown,
                 QStringList{u"Information: Users exported to '%1': 2"_s.arg(desk.path("out.csv"))});
    QVERIFY(!desk.messages.take().isEmpty() && desk.read("out.csv").contains("Müller"));
    desk.click(desk.users(), "cmdSalva");
    QTRY_VERIFY(!desk.users());
    QCOMPARE(desk.test.rows(ArchiveName::Users, saved), (QStringList{u"1|Bianchi"_s, u"70005|Müller"_s}));

    // Closed, the register has to be asked for again; what was saved is what the window had.
    const QByteArray before = desk.read("out.csv");
    desk.entry("mnuExportUsers")->trigger();
    QVERIFY(desk.open("frmPassProg"));
    desk.open("frmPassProg")->findChild<QLineEdit *>(u"txtPass"_s)->setText(u"otra"_s);
    desk.click(desk.open("frmPassProg"), "cmdOk");
    QTRY_VERIFY(desk.window.findChild<QFileDialog *>());
    desk.messages.answers = {Messages::Answer::Yes};
    desk.chooseFile("out.csv");
    QTRY_COMPARE(desk.messages.shown.size(), 2);
    QVERIFY(desk.messages.take()[0].endsWith(u"already exists!\r\nOverwrite ?"));
    QCOMPARE(desk.read("out.csv"), before);
    desk.close();
}

/// What is recognised can be changed, and the dry run follows.
void TestGuiImport::recognised()
{
    ImportDesk desk;
    desk.import("list.csv");
    QTRY_VERIFY(desk.dry());
    QTRY_COMPARE(desk.counts(), counted);
    const auto shown = [&desk](const char *box) {
        return control<QComboBox>(desk.dry(), QString::fromLatin1(box))->currentText();
    };
    QCOMPARE(shown("cmbSeparator") + shown("cmbEncoding") + shown("cmbCognome"), u";Windows-1252Cognome Utente"_s);
    QCOMPARE(shown("cmbNote"), u"(none)"_s);
    desk.choose("cmbExisting", 1);
    QTRY_COMPARE(desk.counts(), u"New: 1 Names changed: 0 Unchanged: 1 Refused: 1 To be looked at: 0"_s);
    desk.choose("cmbExisting", 0);
    desk.click(desk.dry(), "chkHeader");
    QTRY_COMPARE(desk.counts(), u"New: 1 Names changed: 1 Unchanged: 0 Refused: 2 To be looked at: 0"_s);
    QCOMPARE(shown("cmbCognome"), u"column 1"_s);
    desk.choose("cmbCodice", 0);
    QTRY_COMPARE(desk.counts(), u"New: 0 Names changed: 0 Unchanged: 0 Refused: 4 To be looked at: 0"_s);
    QVERIFY(!control(desk.dry(), u"cmdImport"_s)->isEnabled());
    desk.choose("cmbSeparator", 1);
    QTRY_COMPARE(shown("cmbCognome"), u"(none)"_s);
    desk.choose("cmbSeparator", 0);
    QTRY_COMPARE(desk.counts(), counted);
    desk.choose("cmbEncoding", 0);
    QTRY_VERIFY(desk.lines(desk.dry(), "dbgrdRighe").value(1).contains(QChar(0xFFFD)));
    // Cancelled, it has changed nothing.
    desk.click(desk.dry(), "cmdAnnulla");
    QTRY_VERIFY(!desk.dry() && desk.users()->isEnabled());
    QVERIFY(desk.users()->close());
    QTRY_VERIFY(!desk.users());
    desk.close();
}

void TestGuiImport::unreadable_data()
{
    const Rows<QByteArray, QString, bool> row("content", "message", "stays");
    row("a byte 0", QByteArray("1;\0", 3),
        u"Critical: The users cannot be imported from '%1': it is no table of values (CSV)"_s, false);
    row("a line of a megabyte", "1;TX\n" + QByteArray(1 << 20, 'x'),
        u"Critical: '%1' cannot be read from line 2 on: line too long"_s, true);
}

void TestGuiImport::unreadable()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QString, message);
    QFETCH(const bool, stays);
    ImportDesk desk;
    desk.write("list.csv", content);
    desk.import("list.csv");
    QTRY_COMPARE(desk.messages.shown, QStringList{message.arg(desk.path("list.csv"))});
    desk.messages.take();
    QTRY_COMPARE(bool(desk.dry()), stays);
    if (stays) {
        QVERIFY(!control(desk.dry(), u"cmdImport"_s)->isEnabled());
        desk.dry()->close();
    }
    QTRY_VERIFY(!desk.dry() && desk.users()->isEnabled());
    desk.close();
}

/// The program ends in the middle of an import, and the register is as it was.
void TestGuiImport::ends()
{
    ImportDesk desk;
    QByteArray many;
    for (int code = 100; code < 5000; ++code)
        many += QByteArray::number(code) + ";TX;a\n";
    desk.write("list.csv", many);
    desk.import("list.csv");
    QTRY_VERIFY(desk.dry() && control(desk.dry(), u"cmdImport"_s)->isEnabled());
    desk.click(desk.dry(), "cmdImport");
    QVERIFY(!desk.dry()->isEnabled() && !desk.dry()->close());
    QCoreApplication::processEvents();
    desk.window.end();
    QTRY_VERIFY(!desk.window.isVisible());
    QCOMPARE(desk.test.rows(ArchiveName::Users, u"SELECT Codice FROM Utenti"_s), QStringList{u"1"_s});
    QVERIFY(!desk.test.archives.exists(ArchiveName::UsersCopy));
}

QTEST_MAIN(TestGuiImport)
#include "tst_gui_import.moc"
