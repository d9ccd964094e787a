#include "journal/frmJournal.h"
#include "support/Windows.h"
#include "texts/OwnText.h"

#include <QCheckBox>
#include <QHelpEvent>
#include <QToolTip>

namespace {

/// Listened from 00:00 of 04-03 on, without the port from 06:00 to 06:30 of 05-03, and not known before.
struct JournalDesk : Office {
    JournalDesk()
    {
        pass(-(31 * 60 + 45));
        journal.begin(u"1.03"_s);
        note(JournalKind::PortOpened);
        pass(30 * 60);
        note(JournalKind::PortLost);
        pass(30);
        note(JournalKind::PortBack);
        journal.note(JournalKind::BandsSaved);
        journal.note(JournalKind::BackupFailed, u"4"_s);
        pass(75);
        journal.wake();
        form = std::make_unique<frmJournal>(texts, messages, journal, printer);
        form->setAttribute(Qt::WA_DeleteOnClose, false);
        form->resize(900, 700);
        if (!form->open())
            qFatal("the window does not open");
        form->show();
        waitForRows();
    }
    ~JournalDesk() { journal.end(); }

    void note(JournalKind kind) { journal.note(kind, u"7"_s); }
    void pass(int minutes)
    {
        clock.milliseconds += minutes * 60'000;
        clock.moment = clock.moment.addSecs(minutes * 60);
    }
    QTableView *days() { return control<QTableView>(form.get(), u"grdDays"_s); }
    /// A busy machine reads the journal in turns.
    void waitForRows() { QTRY_VERIFY(control(form.get(), u"cmdStampa"_s)->isEnabled()); }
    QStringList rows()
    {
        waitForRows();
        const auto *grid = control<QTableView>(form.get(), u"grdRows"_s);
        QStringList all;
        for (int row = 0; row < grid->model()->rowCount(); ++row)
            all.append(cells(grid, row));
        return all;
    }
    void type(const char *box, const QString &text)
    {
        control<QLineEdit>(form.get(), QString::fromLatin1(box))->setText(text);
    }
    /// Middle of the cell of the last day, at that hour.
    QPoint at(double hour)
    {
        const QModelIndex cell = days()->model()->index(days()->model()->rowCount() - 1, 1);
        days()->scrollTo(cell);
        const QRect rect = days()->visualRect(cell);
        return {rect.left() + qRound(rect.width() * hour / 24), rect.center().y()};
    }

    std::unique_ptr<frmJournal> form;
};

} // namespace

class TestJournalWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void daysAndRows()
    {
        JournalDesk desk;
        const QAbstractItemModel *days = desk.days()->model();
        const auto spoken = [days](int row) { return days->index(row, 1).data(Qt::AccessibleTextRole).toString(); };
        QCOMPARE(days->rowCount(), 7);
        QCOMPARE(spoken(4), u"00:00:00 - 23:59:59: not known"_s);
        QCOMPARE(spoken(5), u"The program listened throughout."_s);
        QCOMPARE(cells(desk.days(), 6), u"05/03/2004|06:00:00 - 06:29:59: serial port lost"_s);
        QCOMPARE(control<QLabel>(desk.form.get(), u"lblCoverage"_s)->text(),
                 u"Not listening: once, 30 min in all. Not known whether listening: once, 5 days in all"_s);
        QCOMPARE(desk.rows().constFirst(), u"04/03/2004|00:00:00|Program started, version 1.03"_s);
        QCOMPARE(desk.rows().constLast(), u"05/03/2004|06:30:00|Backup copy failed: disk full"_s);
        QVERIFY(!control<QLabel>(desk.form.get(), u"lblDays"_s)->isVisible());

        // By group, without reading again; then other days.
        for (const int group : {0, 1, 2})
            control<QCheckBox>(desk.form.get(), u"chkGroups(%1)"_s.arg(group))->click();
        QCOMPARE(desk.rows().size(), 2);
        control<QCheckBox>(desk.form.get(), u"chkGroups(4)"_s)->click();
        QCOMPARE(desk.rows(), QStringList{u"05/03/2004|06:30:00|Weekly programming saved"_s});
        desk.form->show(QDate(2003, 1, 1), QDate(2004, 3, 4));
        QCOMPARE(desk.rows(), QStringList());
        QVERIFY(days->rowCount() == frmJournal::MostDays && spoken(30) == u"The program listened throughout.");
        QVERIFY(control<QLabel>(desk.form.get(), u"lblDays"_s)->isVisible());
        control(desk.form.get(), u"cmdStampa"_s)->click();
        desk.type("txtTo", u"31/12/2002"_s);
        control(desk.form.get(), u"cmdShow"_s)->click();
        desk.type("txtFrom", u"1/1/2003"_s);
        control(desk.form.get(), u"cmdShow"_s)->click();
        QCOMPARE(desk.messages.take().filter(u"date"_s).size(), 2);
        desk.type("txtFrom", u"06/03/2004"_s);
        desk.type("txtTo", u"06/03/2099"_s);
        control(desk.form.get(), u"cmdShow"_s)->click();
        QCOMPARE(days->rowCount(), 0);
    }

    /// Solid, hatched, dotted and blank; the mouse is told the times.
    void bandsShowPatterns()
    {
        JournalDesk desk;
        QCoreApplication::processEvents();
        const auto shades = [&desk](double hour, int day) {
            const QImage image = desk.days()->viewport()->grab().toImage();
            const QPoint middle = desk.at(hour) - QPoint(0, day * desk.days()->rowHeight(0));
            QSet<QRgb> found;
            for (int x = -3; x <= 3; ++x) {
                for (int y = -3; y <= 3; ++y)
                    found.insert(image.pixel(middle + QPoint(x, y)));
            }
            return found;
        };
        const QSet<QRgb> listened = shades(3, 0), gap = shades(6.25, 0), unknown = shades(3, 3), ahead = shades(20, 0);
        QCOMPARE(listened.size(), 1);
        QVERIFY(gap.size() > 1 && !gap.contains(*listened.begin()));
        QVERIFY(unknown.size() > 1 && unknown != gap);
        QCOMPARE(ahead, QSet<QRgb>{desk.days()->palette().color(QPalette::Base).rgb()});
        const auto told = [&desk](double hour) {
            QHelpEvent event(QEvent::ToolTip, desk.at(hour), desk.days()->viewport()->mapToGlobal(desk.at(hour)));
            QCoreApplication::sendEvent(desk.days()->viewport(), &event);
            return QToolTip::text();
        };
        QCOMPARE(told(6.25), u"06:00:00 - 06:29:59: serial port lost"_s);
        QCOMPARE(told(3), u"00:00:00 - 05:59:59: listening"_s);
        told(20);
        QTRY_COMPARE(QToolTip::text(), QString());
    }

    void unreadableJournal()
    {
        JournalDesk desk;
        desk.test.write(ArchiveName::journal(2003), "no archive");
        control(desk.form.get(), u"cmdShow"_s)->click();
        QCOMPARE(desk.messages.take().filter(u"cannot be read: damaged"_s).size(), 1);
        QVERIFY(!desk.rows().isEmpty());
    }
};

QTEST_MAIN(TestJournalWindow)
#include "tst_gui_journal.moc"
