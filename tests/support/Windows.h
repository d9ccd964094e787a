#pragma once

// What the tests of windows have in common.

#include "journal/Journal.h"
#include "startup/CurrentPrinter.h"
#include "support/FakeMessages.h"
#include "support/Fixtures.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTimer>

/// A control of a window by its name; a test without it is no test.
template<class Control = QAbstractButton>
Control *control(const QWidget *window, const QString &name)
{
    auto *found = window->findChild<Control *>(name);
    if (!found)
        qFatal("no control %s", qPrintable(name));
    return found;
}

/// A row of a grid, its cells joined by "|".
inline QString cells(const QTableView *grid, int row)
{
    QStringList texts;
    for (int column = 0; column < grid->model()->columnCount(); ++column)
        texts.append(grid->model()->index(row, column).data().toString());
    return texts.join(u'|');
}

/// What windows stand on: a folder, English texts, somebody who answers, printers.
struct Office {
    /// @param patience  with a print system that does not answer
    explicit Office(std::chrono::milliseconds patience = std::chrono::hours(1)) : printers(patience) { texts.fill(2); }

    TestFolder test;
    FakeClock clock;
    FakeMessages messages;
    Texts texts;
    FakePrinters printers;
    Settings settings{test.folder, printers};
    Notices notices;
    CurrentPrinter printer{settings, printers, notices};
    Journal journal{test.archives, clock, notices};
};
