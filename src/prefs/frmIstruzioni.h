#pragma once

#include "texts/Text.h"
#include "widgets/ChildWindow.h"

class Messages;
class QLabel;
class QModelIndex;
class QPdfBookmarkModel;
class QPdfDocument;
class QPdfView;
class QToolButton;
class QTreeView;
class Texts;

/// Shows one of the manuals, with its table of contents beside it where it has one and there is room.
class frmIstruzioni : public ChildWindow
{
    Q_OBJECT

public:
    /// @param caption  the menu entry
    /// @param file     path of the manual; @p texts and @p messages must outlive this window
    frmIstruzioni(Text caption, const QString &file, const Texts &texts, Messages &messages, QWidget *parent = nullptr);
    ~frmIstruzioni() override;

    /// Reads the manual. When there is none the operator is told so, and the window unloads with that message.
    bool load();

    /// A page in its natural size beside the contents; less where the main window is smaller.
    QSize sizeHint() const override;
    void setCaptions() override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void cmdZoomMeno_Click();
    void cmdZoomLarghezza_Click();
    void cmdZoomPiu_Click();
    void toBegin();
    void toEnd();
    void showPage();
    void showContents();
    void treContenuto_Change(const QModelIndex &chapter);
    void zoom(double step);
    double shownZoom() const;

    const Text m_caption;
    const QString m_file;
    const Texts &m_texts;
    Messages &m_messages;

    QPdfDocument *m_document;
    QPdfBookmarkModel *m_chapters;
    QTreeView *treContenuto;
    QPdfView *ReadPdf;
    QLabel *lblPagina;
    QToolButton *cmdZoomMeno;
    QToolButton *cmdZoomLarghezza;
    QToolButton *cmdZoomPiu;
};
