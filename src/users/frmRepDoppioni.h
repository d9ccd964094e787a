#pragma once

#include "widgets/ChildWindow.h"
#include "widgets/TaskRunner.h"

class QPlainTextEdit;
class Texts;

/// Shows the users whose truncated codes are the same. Of many, the last lines come in a moment later.
class frmRepDoppioni : public ChildWindow
{
    Q_OBJECT

public:
    /// @param texts   must outlive this window
    /// @param report  lines that end with LF
    frmRepDoppioni(const Texts &texts, const QString &report, QWidget *parent = nullptr);

    void setCaptions() override;

Q_SIGNALS:
    /// The operator wants the report on paper.
    void Stampa(const QString &report);
    /// The window has closed, for whatever reason.
    void Chiudi();

private:
    const Texts &m_texts;
    std::unique_ptr<Task> m_filling; ///< of the box
    TaskRunner m_runner;
    QPlainTextEdit *rtbRepDoppioni;
    QPushButton *cmdOk;
    QPushButton *cmdStampa;
};
