#include "events/frmEventiOdierni.h"
#include "events/frmNumEvOd.h"
#include "support/Windows.h"

class TestLiveView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void liveView()
    {
        Office base;
        base.test.addUsers({listOf("1,TX,Rossi,Mario"), listOf("2,TX,Rossi,Anna")});
        base.test.addEvents(u"05-03-2004"_s, {{u"2"_s, u"TX"_s, u"A"_s, {}, {}, u"10:00:00"_s},
                                              {u"2"_s, u"DKS"_s, u"B"_s, {}, u"X"_s, u"10:00:01"_s}});
        frmEventiOdierni view(base.texts, base.messages, base.test.archives, base.clock, base.printer);
        QVERIFY(view.open());
        view.setNumEv(3);
        view.show();
        auto *grid = control<QTableView>(&view, u"flxgrdEventi"_s);
        auto *load = control<QTimer>(&view, u"tmrLoad"_s);
        auto *refresh = control<QTimer>(&view, u"tmrRefresh"_s);
        load->start(0);
        QTRY_VERIFY(refresh->isActive());
        QCOMPARE(grid->model()->rowCount(), 3);
        QCOMPARE(cells(grid, 0), u"1|TX|Rossi|Anna|A||05-03-2004|10:00:00|"_s);
        QCOMPARE(cells(grid, 1), u"2|DKS|||B||05-03-2004|10:00:01|X"_s);
        QCOMPARE(cells(grid, 2), u"||||||||"_s);
        for (int i = 0; i < 2; ++i)
            base.test.addEvents(u"05-03-2004"_s, {{u"9"_s, u"TX"_s, u"C"_s, u"X"_s, {}, u"10:00:02"_s}});
        refresh->start(0);
        QTRY_COMPARE(refresh->interval(), 500);
        QCOMPARE(cells(grid, 2), u"4|TX|||C|X|05-03-2004|10:00:02|"_s);
        QCOMPARE(grid->currentIndex().row(), 2);
        // Below the newest event there are blank rows: who goes there has not gone back to older ones.
        view.setNumEv(200);
        load->start(0);
        QTRY_COMPARE(grid->model()->rowCount(), 200);
        grid->setCurrentIndex(grid->model()->index(0, 0));
        QTest::keyClick(grid, Qt::Key_End, Qt::ControlModifier);
        QCOMPARE(grid->currentIndex().row(), 199);
        base.test.addEvents(u"05-03-2004"_s, {{u"9"_s, u"TX"_s, u"D"_s, {}, {}, u"10:00:03"_s}});
        refresh->start(0);
        QTRY_COMPARE(grid->currentIndex().row(), 4);
        QVERIFY(grid->viewport()->rect().contains(grid->visualRect(grid->currentIndex())));
        // A day that cannot be read for a while is told once, and what was there stays.
        QFile::remove(base.test.folder.path(ArchiveName::events(u"05-03-2004"_s)));
        for (int i = 0; i < 8; ++i) {
            QCOMPARE(base.messages.shown.size(), i < 4 ? 0 : 1);
            refresh->start(0);
            QTRY_COMPARE(refresh->interval(), 500);
        }
        QCOMPARE(base.messages.take().size(), 1);
        QCOMPARE(cells(grid, 4), u"5|TX|||D||05-03-2004|10:00:03|"_s);
    }

    void numberOfEvents()
    {
        Office office;
        frmNumEvOd form(office.texts, office.settings, office.messages);
        form.setAttribute(Qt::WA_DeleteOnClose, false);
        form.show();
        auto *box = control<QLineEdit>(&form, u"txtNumEv"_s);
        for (const auto &[typed, accepted] :
             {std::pair(u"12a3"_s, u"123"_s), {u"2000"_s, u"1000"_s}, {u"0"_s, u"0"_s}}) {
            box->clear();
            QTest::keyClicks(box, typed);
            QCOMPARE(box->text(), accepted);
        }
        control(&form, u"cmdOk"_s)->click();
        QVERIFY(form.isVisible() && office.messages.take().first().startsWith(u"Exclamation: The number of events"_s));
        box->setText(u"40"_s);
        control(&form, u"cmdOk"_s)->click();
        QVERIFY(!form.isVisible() && office.settings.NumEvOd == 40);
        QCOMPARE(office.settings.LeggiImpostazione(u"NUMEVOD"_s), u"40"_s);
    }
};

QTEST_MAIN(TestLiveView)
#include "tst_gui_liveview.moc"
