#include "widgets/UserCombo.h"

#include "platform/FreedInTurns.h"
#include "texts/NameKey.h"

#include <QAbstractListModel>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QScopedValueRollback>

#include <algorithm>

class UserCombo::Model : public QAbstractListModel
{
public:
    using QAbstractListModel::QAbstractListModel;

    const QList<NameEntry> &entries() const { return m_entries; }

    void setEntries(QList<NameEntry> entries)
    {
        beginResetModel();
        m_entries = std::move(entries);
        endResetModel();
    }

    int rowOf(std::optional<qint64> id) const
    {
        const auto found = std::find_if(m_entries.cbegin(), m_entries.cend(),
                                        [id](const NameEntry &entry) { return id && entry.id == *id; });
        return found == m_entries.cend() ? -1 : static_cast<int>(found - m_entries.cbegin());
    }

    /// First row with that name, case and accents aside; -1 when nobody has it.
    int rowOf(const QString &text) const
    {
        const QString key = nameKey(text);
        const auto found = std::lower_bound(m_entries.cbegin(), m_entries.cend(), key,
                                            [](const NameEntry &entry, const QString &k) { return entry.key < k; });
        if (text.isEmpty() || found == m_entries.cend() || found->key != key)
            return -1;
        return static_cast<int>(found - m_entries.cbegin());
    }

    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
    }

    QVariant data(const QModelIndex &index, int role) const override
    {
        if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole))
            return {};
        return m_entries[index.row()].text;
    }

private:
    FreedInTurns<QList<NameEntry>> m_entries;
};

UserCombo::UserCombo(const QString &name, QWidget *parent) : QComboBox(parent), m_model(new Model(this))
{
    setObjectName(name);
    setEditable(true);
    setInsertPolicy(NoInsert);
    // Without this the Enter key would go to the first person of that name.
    setDuplicatesEnabled(true);
    // Measuring every entry would take its time with fifty thousand of them.
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(9);
    auto *list = new QListView(this);
    list->setUniformItemSizes(true);
    setView(list);
    {
        const QScopedValueRollback setting(m_setting, true);
        setModel(m_model);
        setCurrentIndex(-1);
    }
    completer()->setCaseSensitivity(Qt::CaseInsensitive);
    connect(this, &QComboBox::activated, this, &UserCombo::entryChosen);
    connect(this, &QComboBox::editTextChanged, this, &UserCombo::textTyped);
}

void UserCombo::setEntries(QList<NameEntry> entries)
{
    const std::optional<qint64> id = shown();
    const QScopedValueRollback setting(m_setting, true);
    const QString typed = currentText();
    m_model->setEntries(std::move(entries));
    m_row = m_model->rowOf(id);
    setCurrentIndex(m_row);
    if (m_row < 0 && !id)
        setEditText(typed);
}

std::optional<qint64> UserCombo::shown() const
{
    if (m_row < 0)
        return {};
    return m_model->entries()[m_row].id;
}

void UserCombo::showEntry(std::optional<qint64> id)
{
    const QScopedValueRollback setting(m_setting, true);
    m_row = m_model->rowOf(id);
    setCurrentIndex(m_row);
    setEditText(m_row < 0 ? QString() : m_model->entries()[m_row].text);
}

void UserCombo::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)
        goToShown();
    QComboBox::keyPressEvent(event);
}

void UserCombo::wheelEvent(QWheelEvent *event)
{
    goToShown();
    QComboBox::wheelEvent(event);
}

void UserCombo::goToShown()
{
    // The list itself does not follow what is typed; from here on it goes up and down.
    const QScopedValueRollback setting(m_setting, true);
    if (m_row >= 0 && m_row != currentIndex())
        setCurrentIndex(m_row);
}

void UserCombo::entryChosen(int row)
{
    // The list reports an entry again when the keyboard leaves the box.
    if (row == m_row)
        return;
    m_row = row;
    Q_EMIT edited();
}

void UserCombo::textTyped(const QString &text)
{
    if (m_setting)
        return;
    const auto shows = [&](int row) { return row >= 0 && m_model->entries()[row].text == text; };
    // Choosing from the list has changed the text already, and tells of itself in a moment.
    const int listed = currentIndex();
    const bool isListed = listed != m_row && shows(listed);
    if (!isListed && shows(m_row))
        return;
    m_row = isListed ? listed : m_model->rowOf(text);
    Q_EMIT edited();
}
