#pragma once

#include "platform/Page.h"
#include "texts/Texts.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>

class ChildWindow;
class CurrentPrinter;
class Messages;
class frmStampaInCorso;

/// Printing of one window: a notice over it, the report painted in short turns of the event loop, the document handed
/// over to the current printer. A window that closes in the middle of it takes its document with it, and the operator
/// is told.
///
/// The document is painted to a file before the print system hears of it: what was stopped or failed prints nothing.
class Printing : public QObject
{
    Q_OBJECT

public:
    /// @param window   whose documents these are; this object becomes its child
    /// @param printer  like the next two, must outlive this object
    Printing(ChildWindow *window, const CurrentPrinter &printer, const Texts &texts, Messages &messages);
    ~Printing() override;

    /// Whether a print can begin. When there is no printer the operator is told; a print that still runs is silently
    /// left alone. To be asked before each print.
    /// @param icon  of the message that no printer is installed
    bool isReady(Icon icon = Icon::Information);
    /// Begins a print; after isReady() only.
    /// @param title  of the job; @param ended  called when the document was handed over or has failed and the operator
    /// was told, not when the window closes before
    void print(std::unique_ptr<Report> report, const QString &title, std::function<void()> ended = {});
    bool isRunning() const { return m_document != nullptr; }
    /// Ends a print in the middle; nothing of it goes to the printer.
    void stop();

private:
    struct Document;

    void windowGoes();
    void turn();
    void finish();
    void fail(const Message &message);
    void tmrStampa_Timer();

    ChildWindow *m_window;
    const CurrentPrinter &m_printer;
    const Texts &m_texts;
    Messages &m_messages;

    QString m_printerName;
    std::unique_ptr<Document> m_document;
    QTimer m_turn;
    QTimer *tmrStampa;
    QPointer<frmStampaInCorso> m_notice;
};
