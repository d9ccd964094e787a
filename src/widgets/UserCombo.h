#pragma once

#include "texts/NameSort.h"

#include <QComboBox>

#include <optional>

/// Chooses a person by name, from a list or by typing. Several people may share a name: what is chosen is known by its
/// id, not by the text that is shown.
class UserCombo : public QComboBox
{
    Q_OBJECT

public:
    /// @param name  becomes the objectName
    explicit UserCombo(const QString &name, QWidget *parent = nullptr);

    /// @param entries  sorted by their keys; the person that is shown stays when it is among them
    void setEntries(QList<NameEntry> entries);

    /// Id of the entry shown; none when the text is empty or is no entry's.
    std::optional<qint64> shown() const;
    /// Shows an entry, or nothing when there is none of that id.
    void showEntry(std::optional<qint64> id);

Q_SIGNALS:
    /// The operator has chosen an entry or changed the text.
    void edited();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    class Model;

    void goToShown();
    void entryChosen(int row);
    void textTyped(const QString &text);

    Model *m_model;
    int m_row = -1; ///< of the entry shown
    bool m_setting = false;
};
