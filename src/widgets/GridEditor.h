#pragma once

#include "archives/CopyEditor.h"
#include "texts/Texts.h"
#include "widgets/ChildWindow.h"
#include "widgets/RecordSetModel.h"

#include <optional>

class Grid;
class Messages;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

/// Editor of a list of intervals: a grid over a working copy of their archive, two boxes for the ends of an interval,
/// and the buttons that add, modify and delete. OK puts the copy in the archive's place; every other way out leaves the
/// archive untouched, and is asked about when something was changed.
class GridEditor : public ChildWindow
{
    Q_OBJECT

public:
    ~GridEditor() override;

    /// Makes the working copy and shows it.
    bool open() override;
    /// Time has gone on: shows it where it is to be seen.
    void showMoment();
    QSize wantedSize(QSize area) const override;
    void setCaptions() override;

Q_SIGNALS:
    /// The archive has been replaced by what was edited.
    void saved();

protected:
    /// One end of the interval.
    struct End {
        QString field;
        QString box; ///< objectName, as is the next
        QString label;
        QString caption;
    };
    /// In what one of the editors differs from the other.
    struct Form {
        QString window; ///< objectName, as are the next two
        QString grid;
        QString data;
        Text title;
        End first;
        End last;
        QList<RecordSetModel::Column> columns;
        QString widest;     ///< as wide as any end
        int firstEndColumn; ///< from this column on, a cell that is entered puts its row into the boxes
        Text askDelete;
        Text isThere;
    };
    struct Entry {
        QString first;
        QString last;
    };
    enum class Box { First, Last };
    /// Why an entry is not stored, and the box to be mended.
    struct Refusal {
        std::optional<Text> message; ///< none: nothing happens
        Box box = Box::First;
    };

    /// @param form   makes it, in the language in force
    /// @param texts  like the next two, must outlive this window
    GridEditor(Form (*form)(const Texts &), CopyEditor::Source source, const Texts &texts, Messages &messages,
               ArchiveStore &archives, QWidget *parent);

    /// @param entry  may be completed; the boxes then show it
    virtual std::optional<Refusal> check(Entry &entry) const = 0;
    /// Values of a row that takes the place of another.
    virtual RecordSet::Values modified(const Entry &entry) const = 0;
    virtual RecordSet::Values added(const Entry &entry) const { return modified(entry); }
    /// A cell of the current row was clicked, or the space bar pressed on it.
    virtual void cellPressed(int column) { Q_UNUSED(column) }

    /// Stores @p values in the current row, which keeps its place.
    void storeInPlace(const RecordSet::Values &values);
    QString currentValue(int column) { return m_editor.set().value(column); }

    /// Puts a picture of the rows to the right of all that is there. It gives way where that would get less than it
    /// wants.
    void setPicture(QWidget *picture);
    /// Rows have changed, or another one is marked.
    virtual void showPicture() {}
    const RecordSet &rows() const { return m_editor.set(); }
    qsizetype markedRow() const { return m_editor.set().position(); }
    void markRow(qsizetype row);

    bool canClose() override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void build();
    void makeRoom(int width) const;

    void grid_RowColChange();
    void cmdAggiungi_Click();
    void cmdModifica_Click();
    void cmdElimina_Click();
    void cmdOk_Click();
    void cmdAnnulla_Click();

    std::optional<Entry> acceptedEntry();
    void finish(Result<void> changed);
    void showFault(QWidget *over, OwnText text, const Fault &fault);

    Form (*const m_makeForm)(const Texts &);
    Form m_form; ///< in the language in force
    const Texts &m_texts;
    Messages &m_messages;
    CopyEditor m_editor;

    Grid *m_grid;
    RecordSetModel *m_model;
    QGroupBox *m_frame;
    QLabel *m_firstLabel;
    QLineEdit *m_first;
    QLabel *m_lastLabel;
    QLineEdit *m_last;
    QPushButton *cmdAggiungi;
    QPushButton *cmdModifica;
    QPushButton *cmdElimina;
    QPushButton *cmdOk;
    QPushButton *cmdAnnulla;
    QLayout *m_list = nullptr; ///< all but the picture
    QWidget *m_picture = nullptr;
};
