#pragma once

#include "reports/Page.h"
#include "startup/CurrentPrinter.h"
#include "texts/Texts.h"
#include "widgets/TaskRunner.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>

class ChildWindow;
class Messages;
class frmStampaInCorso;

/// Printing of one window: the current printer is looked for, a notice shown, the report painted in short turns of the
/// event loop, the document handed over. A window that closes in the middle of it takes its document with it, and the
/// operator is told.
///
/// The document is painted to a file before the print system hears of it: what was stopped or failed prints nothing.
/// The library's own printer would ask the print system, for minutes when that is silent, print half of a stopped
/// document, and swallow a refusal.
/// What becomes of a document that was handed over is the current printer's affair.
class Printing : public QObject
{
    Q_OBJECT

public:
    /// @param window   whose documents these are; this object becomes its child
    /// @param printer  like the next two, must outlive this object
    Printing(ChildWindow *window, const CurrentPrinter &printer, const Texts &texts, Messages &messages);
    ~Printing() override;

    /// Looks for the printer; to be asked before each print. Nothing is called while a print still runs, which is
    /// left alone, nor when the window closes first.
    /// @param found     called when print() may be, later on
    /// @param notFound  called when there is no printer, which the operator is told
    /// @param icon      of the message that no printer is installed
    void findPrinter(std::function<void()> found, std::function<void()> notFound = {}, Icon icon = Icon::Information);
    /// Begins a print; from @p found only.
    /// @param title  of the job
    /// @param ended  called when the document was handed over (true) or has failed and the operator was told (false),
    /// not when the window closes before
    void print(std::unique_ptr<Report> report, const QString &title, std::function<void(bool)> ended = {});
    bool isRunning() const { return m_search || m_runner.isRunning(); }
    /// Ends a print in the middle; nothing of it goes to the printer.
    void stop();

private:
    class Document;

    void tellNoPrinter(const Fault &fault, Icon icon);
    void windowGoes();
    void tellLost();
    void tmrStampa_Timer();

    ChildWindow *m_window;
    const CurrentPrinter &m_printer;
    const Texts &m_texts;
    Messages &m_messages;

    std::unique_ptr<CurrentPrinter::Search> m_search;
    CurrentPrinter::Found m_found;
    TaskRunner m_runner;
    QTimer *tmrStampa;
    QPointer<frmStampaInCorso> m_notice;
};
