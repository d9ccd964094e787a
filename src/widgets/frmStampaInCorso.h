#pragma once

#include <QWidget>

class QLabel;
class Texts;

/// The notice that a print runs. It takes neither the keyboard nor any other window's attention.
class frmStampaInCorso : public QWidget
{
    Q_OBJECT

public:
    /// Shows itself over @p window, in the middle of its width and at a third of its height.
    frmStampaInCorso(const Texts &texts, QWidget *window);

    void setCaptions();

private:
    const Texts &m_texts;
    QLabel *lblStampa;
};
