#pragma once

#include "link/InterfaceConfig.h"
#include "texts/Texts.h"
#include "widgets/ChildWindow.h"
#include "widgets/Messages.h"

#include <QTimer>

#include <array>

class QLabel;
class QLineEdit;

/// Shows the configuration that the interface tells of itself.
///
/// It asks for a reading soon after it has opened and whenever the operator wants another one; who opened it answers
/// each time with configurationRead() or notOnLine().
class frmConfInt : public ChildWindow
{
    Q_OBJECT

public:
    /// Both must outlive the window.
    frmConfInt(const Texts &texts, Messages &messages, QWidget *parent = nullptr);

    /// A query has ended; without an answer the operator is told so, and what was shown stays.
    void configurationRead(const InterfaceConfig &config);
    /// The interface is known not to answer: the operator is told so, and the window closes.
    void notOnLine();

    QPoint place(QSize area, QSize own) const override;
    void setCaptions() override;

Q_SIGNALS:
    /// A reading is wanted.
    void Leggi();

private:
    void cmdLeggi_Click();
    void showReading(bool reading);
    void showRead();

    static constexpr size_t FieldCount = 9;

    const Texts &m_texts;
    Messages &m_messages;
    std::array<QLabel *, FieldCount> m_labels;
    std::array<QLineEdit *, FieldCount> m_boxes;
    QLabel *lblLettura;
    QPushButton *cmdLeggi;
    QPushButton *cmdOk;
    QTimer tmrLoad;
    std::optional<InterfaceConfig> m_read; ///< last answer
    bool m_leggiHadFocus = false;
};
