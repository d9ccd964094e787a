#pragma once

#include "platform/Errand.h"
#include "platform/PrintSystem.h"

#include <QTemporaryDir>

/// A document that waits for a printer to take it.
struct PrintDocument {
    std::unique_ptr<QTemporaryDir> folder; ///< holds the document and nothing else; removed with this object
    QString printer;                       ///< device name
    QString title;                         ///< for lists of jobs

    QString path() const { return folder->filePath(QStringLiteral("document.pdf")); }
};

/// A document on its way to the print system. It is waited for as long as that takes: a job that was given up might
/// still be printed. The document's folder stays until there is an answer, or until this object goes.
class PrintJob : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds Patience{10'000};

    /// @param patience  after which waits() is told
    PrintJob(std::shared_ptr<const PrintSystem> system, PrintDocument document,
             std::chrono::milliseconds patience = Patience, QObject *parent = nullptr);

    const QString &printer() const { return m_document.printer; }
    bool isUnderWay() const { return m_document.folder != nullptr; }
    /// Holds the caller up until there is an answer, for @p most at most. Nothing is told of it any more.
    /// @return the answer when there is one
    std::optional<Result<void>> wait(std::chrono::milliseconds most);

Q_SIGNALS:
    /// Told once; the folder has gone. See PrintSystem::send().
    void answered(const Result<void> &answer);
    /// Told once, when it has taken long and nothing is known yet.
    void waits();

private:
    PrintDocument m_document;
    QTimer m_patience;
    Errand<void> m_errand;
};
