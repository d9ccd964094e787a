#include "support/RecordingVfs.h"
#include "support/Windows.h"
#include "timeprog/frmFerie.h"
#include "timeprog/frmSettimana.h"

#include <QAccessible>

namespace {

constexpr auto week = "XXXXX   08:00 12:00;XXXXX   14:00 18:00", days = " 02/01/2005 02/01/2005; 31/12/2004 01/01/2005";
constexpr auto lost = "Question: Attention: all changes will be cancelled!\r\nContinue ?";

/// An editor on an archive of two rows, with English texts.
struct Desk : Office {
    explicit Desk(bool isWeek) : archive(isWeek ? ArchiveName::Bands : ArchiveName::Holidays)
    {
        if (!test.archives.copy(isWeek ? ArchiveName::BandsTemplate : ArchiveName::HolidaysTemplate, archive))
            qFatal("no archive");
        open();
        enter(isWeek ? "14:00=18:00 Aggiungi 08:00=12:00 Aggiungi Ok"
                     : "31/12/2004=01/01/2005 Aggiungi 02/01/2005= Aggiungi Ok");
        open();
    }
    ~Desk() { delete window; }

    bool open()
    {
        delete window;
        if (archive == ArchiveName::Bands)
            window = new frmSettimana(texts, messages, test.archives, clock);
        else
            window = new frmFerie(texts, messages, test.archives, clock);
        grid = window->findChild<QTableView *>();
        boxes = window->findChildren<QLineEdit *>();
        window->show();
        return window->open() && QTest::qWaitForWindowActive(window);
    }
    /// "first=last" fills the boxes, "@1,2" clicks that cell, "_" is the space bar, "Yes" answers the next question,
    /// anything else is a button.
    void enter(const QString &input)
    {
        for (const QString &one : input.split(u' ', Qt::SkipEmptyParts)) {
            if (one == u"Yes")
                messages.answers.append(Messages::Answer::Yes);
            else if (one == u"_")
                QTest::keyClick(grid, Qt::Key_Space);
            else if (one.startsWith(u'@'))
                QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualRect(cell(one)).center());
            else if (auto *button = window->findChild<QPushButton *>(u"cmd"_s + one))
                button->click();
            else
                for (int i : {0, 1})
                    boxes[i]->setText(one.section(u'=', i, i));
            QCoreApplication::processEvents(); // an answer has come
        }
    }
    QModelIndex cell(const QString &name) const
    {
        return grid->model()->index(name.mid(1, 1).toInt(), name.mid(3).toInt());
    }
    void enter(const char *input) { enter(QString::fromLatin1(input)); }
    QString shown() const
    {
        QStringList rows;
        for (int row = 0; row < grid->model()->rowCount(); ++row) {
            rows.append(QString());
            for (int column = 0; column < grid->model()->columnCount(); ++column) {
                const QString cell = grid->model()->index(row, column).data().toString();
                rows.last() += cell.size() > 1 ? u' ' + cell : cell;
            }
        }
        return rows.join(u';');
    }
    /// Current row, text of the boxes, and the box that has the keyboard with its whole text selected.
    QString state() const
    {
        QString state = u"%1 %2=%3"_s.arg(grid->currentIndex().row()).arg(boxes[0]->text(), boxes[1]->text());
        for (const QLineEdit *box : boxes)
            if (box->hasFocus() && box->hasSelectedText() && box->selectedText() == box->text())
                state += u' ' + box->objectName();
        return state;
    }

    QStringView archive;
    QPointer<GridEditor> window;
    QTableView *grid = nullptr;
    QList<QLineEdit *> boxes;
};

struct Case {
    const char *name, *input, *rows, *state, *message = "";
};

} // namespace

class TestGuiEditors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void edits_data()
    {
        constexpr auto ask = "Question: Eliminate the current time band?",
                       twice = "Question: Eliminate the current time band?|Question: Eliminate the current time band?",
                       time = "Exclamation: Incorrect time format! (hh:mm)";
        constexpr auto date = "Exclamation: Incorrect date format! (dd/mm/yyyy)";
        constexpr auto band = "Exclamation: Time band already present!";
        // clang-format off
        const QList<Case> cases = {
            {"opened", "", week, "0 ="},
            {"start", "7:30=24:00 Aggiungi", week, "0 7:30=24:00 txtOraIn", time},
            {"end before start", "09:01=09:00 Aggiungi", week, "0 09:01=09:00 txtOraFine",
             "Exclamation: The starting time must proceed the arrival time!"},
            {"add", "@1,7 09:00=09:00 Aggiungi", "XXXXX   08:00 12:00;XXXXX   09:00 09:00;XXXXX   14:00 18:00",
             "1 09:00=09:00"},
            {"add what is there", "@0,5 14:00=18:00 Aggiungi", "XXXXXX  08:00 12:00;XXXXX   14:00 18:00", "0 14:00=18:00",
             band},
            {"modify after a refusal", "@1,7 08:00=12:00 Modifica 07:00=12:00 Modifica",
             "XXXXX   07:00 12:00;XXXXX   08:00 12:00", "0 07:00=12:00", band},
            {"modify keeps the marks", "@1,6 13:00=18:00 Modifica", "XXXXX   08:00 12:00;XXXXX X 13:00 18:00",
             "1 13:00=18:00"},
            {"modify the second, once more", "09:00=10:00 Aggiungi @1,7 10:00=11:00 Modifica 10:00=11:30 Modifica",
             "XXXXX   08:00 12:00;XXXXX   10:00 11:30;XXXXX   14:00 18:00", "1 10:00=11:30"},
            {"modify, then a key", "@0,6 13:00=19:00 Modifica 15:00=19:00 Modifica _",
             "XXXXX   14:00 18:00;XXXXX   15:00 19:00", "1 15:00=19:00"},
            {"delete, then the follower", "09:00=10:00 Aggiungi @1,5 Yes Elimina _",
             "XXXXX   08:00 12:00;XXXXXX  14:00 18:00", "1 09:00=10:00", ask},
            {"toggle", "@1,0 @1,5 _ _ @1,7 _", "XXXXX   08:00 12:00; XXXXX  14:00 18:00", "1 14:00=18:00"},
            {"delete", "@1,7 Yes Elimina", "XXXXX   08:00 12:00", "0 08:00=12:00", ask},
            {"do not delete", "@1,2 _ Elimina", week, "1 =", ask},
            {"delete all, add", "Yes Yes Elimina Elimina 08:00=23:59 Aggiungi", "XXXXX   08:00 23:59", "0 08:00=23:59",
             twice},
            {"one day", "24/12/2004= Aggiungi", " 02/01/2005 02/01/2005; 24/12/2004 24/12/2004; 31/12/2004 01/01/2005",
             "1 24/12/2004=24/12/2004"},
            {"no first day", "=24/12/2004 Aggiungi Modifica", days, "0 =24/12/2004"},
            {"a sign for a digit", "+1/12/2004= Aggiungi", days, "0 +1/12/2004= txtDalGiorno", date},
            {"last before first", "05/01/2005=04/01/2005 Aggiungi", days, "0 05/01/2005=04/01/2005 txtAlGiorno",
             "Exclamation: The starting date must come before the finishing date!"},
            {"order by key, not by text", "@1,0 31/12/2004=02/01/2005 Modifica",
             " 02/01/2005 02/01/2005; 31/12/2004 02/01/2005", "1 31/12/2004=02/01/2005"},
            {"modify a holiday, once more", "@1,0 31/12/2004=02/01/2005 Modifica 31/12/2004=03/01/2005 Modifica",
             " 02/01/2005 02/01/2005; 31/12/2004 03/01/2005", "1 31/12/2004=03/01/2005"},
            {"holiday that is there", "@1,1 02/01/2005= Modifica", days, "1 02/01/2005=02/01/2005",
             "Exclamation: Holiday interval already present!"},
        };
        // clang-format on
        QTest::addColumn<Case>("row");
        for (const Case &one : cases)
            QTest::newRow(one.name) << one;
    }
    void edits()
    {
        QFETCH(Case, row);
        Desk desk(*row.rows != ' ');
        desk.enter(row.input);
        QCOMPARE(desk.messages.take().join(u'|'), QLatin1String(row.message));
        QCOMPARE(desk.shown(), QLatin1String(row.rows));
        QCOMPARE(desk.state(), QLatin1String(row.state));
        QCOMPARE(desk.window->findChild<QPushButton *>(u"cmdModifica"_s)->isEnabled(), *row.rows != '\0');
        desk.enter("Ok");
        QVERIFY(desk.open());
        QCOMPARE(desk.shown(), QLatin1String(row.rows));
    }

    void ends_data()
    {
        QTest::addColumn<QString>("way");
        for (const char *way : {"Annulla", "Ok", "close box", "unload"})
            QTest::newRow(way) << QString::fromLatin1(way);
    }
    /// Each way out: unchanged, changed and then No, changed and then Yes.
    void ends()
    {
        QFETCH(QString, way);
        for (const char *input : {"", "@0,6 ", "@0,6 Yes "}) {
            Desk desk(true);
            desk.enter(input);
            desk.test.disk.steps.clear();
            QSignalSpy closed(desk.window, &ChildWindow::unloaded), refused(desk.window, &ChildWindow::closeRefused);
            bool hasCopy = true;
            connect(desk.window, &ChildWindow::unloaded, this,
                    [&] { hasCopy = desk.test.folder.exists(u"Archivi/Fascie.$$$"_s); });
            if (way == u"close box")
                desk.window->close();
            else
                way == u"unload" ? desk.window->unload() : desk.enter(way);
            QCoreApplication::processEvents();
            const bool isAsked = *input != '\0' && (way == u"Annulla" || way == u"close box");
            const bool stays = isAsked && !QByteArray(input).contains("Yes");
            QCOMPARE(desk.messages.take().join(u'|'), QLatin1String(isAsked ? lost : ""));
            QVERIFY(closed.isEmpty() == stays && refused.isEmpty() != stays && hasCopy == stays);
            QCOMPARE(desk.test.disk.steps.contains(u"rename Fascie.zeb"_s), way == u"Ok");
        }
    }

    /// The picture shows each change before it is saved, marks the row that is clicked in it, and gives way.
    void picture()
    {
        for (const bool isWeek : {true, false}) {
            Desk desk(isWeek);
            auto *picture = control<QWidget>(desk.window, isWeek ? u"WeekPicture"_s : u"HolidayPicture"_s);
            desk.enter(isWeek ? "@1,5" : "01/01/2005=07/01/2005 Aggiungi");
            const QString words = picture->accessibleDescription();
            QVERIFY2(words.contains(isWeek ? u"Saturday: 14:00 - 18:00"_s : u"31/12/2004 - 07/01/2005"_s),
                     qPrintable(words));
            desk.enter("@0,0");
            const int height = (picture->height() - picture->fontMetrics().height()) / (isWeek ? 7 : 13);
            const int strip = isWeek ? 5 : 9, width = picture->width();
            for (int x = width - 1; x > 0 && desk.grid->currentIndex().row() == 0; --x)
                QTest::mouseClick(picture, Qt::LeftButton, {},
                                  {x, picture->fontMetrics().height() +
                                          strip * qMin(height, 2 * picture->fontMetrics().height()) + 3});
            QVERIFY(cells(desk.grid, desk.grid->currentIndex().row())
                        .startsWith(isWeek ? u"X|X|X|X|X|X| |14:00"_s : u"31/12/2004"_s));
            desk.window->resize(desk.window->wantedSize({desk.window->width() - width, 2000}));
            QVERIFY(!picture->isVisible());
            desk.window->resize(desk.window->wantedSize({2000, 2000}));
            QVERIFY(picture->isVisible());
            desk.enter("Yes");
            desk.window->unload();
        }
    }

    void faults()
    {
        RecordingVfs vfs;
        Desk desk(false);
        const QString keys = u"SELECT DalGiorno, DalGiornoOrd FROM Giorni WHERE AlGiornoOrd='20050501'"_s;
        vfs.refusal = SQLITE_FULL;
        desk.enter("01/05/2005= Aggiungi");
        vfs.refusal = 0;
        desk.enter("Aggiungi");
        const QString edited = desk.shown();
        desk.test.disk.stopAt = 0;
        desk.enter("Ok");
        QCOMPARE(desk.test.rows(desk.archive, keys), QStringList());
        QCOMPARE(desk.shown(), edited);
        desk.test.disk.stopAt = -1;
        desk.enter("Ok");
        QCOMPARE(desk.test.rows(desk.archive, keys), QStringList{u"01/05/2005|20050501"_s});
        QVERIFY(desk.test.archives.remove(desk.archive).ok() && !desk.open());
        QCOMPARE(
            desk.messages.take(),
            (QStringList(
                {u"Critical: The change to the archive 'Archivi/Ferie.zeb' cannot be made: disk full"_s,
                 u"Critical: The changes to the archive 'Archivi/Ferie.zeb' cannot be saved: read or write error"_s,
                 u"Critical: The archive 'Archivi/Ferie.zeb' cannot be opened to be edited: does not exist"_s})));
    }
};

QTEST_MAIN(TestGuiEditors)
#include "tst_gui_editors.moc"
