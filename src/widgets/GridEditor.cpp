#include "widgets/GridEditor.h"

#include "startup/PlainText.h"
#include "texts/OwnText.h"
#include "widgets/Grid.h"
#include "widgets/Messages.h"
#include "widgets/Twips.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

constexpr int wantedRows = 8;

} // namespace

GridEditor::GridEditor(Form (*form)(const Texts &), CopyEditor::Source source, const Texts &texts, Messages &messages,
                       ArchiveStore &archives, QWidget *parent)
    : ChildWindow({}, parent),
      m_makeForm(form),
      m_form(form(texts)),
      m_texts(texts),
      m_messages(messages),
      m_editor(archives, std::move(source)),
      m_grid(new Grid),
      m_model(new RecordSetModel(m_form.columns, this)),
      m_frame(new QGroupBox),
      m_firstLabel(new QLabel),
      m_first(new QLineEdit),
      m_lastLabel(new QLabel),
      m_last(new QLineEdit),
      cmdAggiungi(new QPushButton),
      cmdModifica(new QPushButton),
      cmdElimina(new QPushButton),
      cmdOk(new QPushButton),
      cmdAnnulla(new QPushButton)
{
    setObjectName(m_form.window);
    build();
    GridEditor::setCaptions();

    connect(m_grid, &QTableView::clicked, this, [this](const QModelIndex &cell) {
        grid_RowColChange();
        cellPressed(cell.column());
    });
    connect(cmdAggiungi, &QPushButton::clicked, this, &GridEditor::cmdAggiungi_Click);
    connect(cmdModifica, &QPushButton::clicked, this, &GridEditor::cmdModifica_Click);
    connect(cmdElimina, &QPushButton::clicked, this, &GridEditor::cmdElimina_Click);
    connect(cmdOk, &QPushButton::clicked, this, &GridEditor::cmdOk_Click);
    connect(cmdAnnulla, &QPushButton::clicked, this, &GridEditor::cmdAnnulla_Click);
    // Connected before any opener can be: whoever hears of the end finds no working copy any more.
    connect(this, &ChildWindow::unloaded, this, [this] { m_editor.discard(); });
    setKeys(cmdOk, cmdAnnulla);
}

GridEditor::~GridEditor()
{
    // The grid lives longer than the rows.
    m_model->setRecordSet(nullptr);
}

void GridEditor::build()
{
    m_grid->setObjectName(m_form.grid);
    m_model->setObjectName(m_form.data);
    m_grid->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + pixels(195));
    if (m_form.firstEndColumn > 0)
        m_grid->setMarksCell();
    m_grid->installEventFilter(this);
    m_model->bind(m_grid);

    m_frame->setObjectName(QStringLiteral("Frame1"));
    auto *boxes = new QGridLayout(m_frame);
    int row = 0;
    for (const auto &[end, label, box] :
         {std::tuple(&m_form.first, m_firstLabel, m_first), std::tuple(&m_form.last, m_lastLabel, m_last)}) {
        label->setObjectName(end->label);
        box->setObjectName(end->box);
        label->setBuddy(box);
        boxes->addWidget(label, row, 0);
        boxes->addWidget(box, row++, 1);
    }

    for (const auto &[button, name] :
         {std::pair(cmdAggiungi, "cmdAggiungi"), std::pair(cmdModifica, "cmdModifica"),
          std::pair(cmdElimina, "cmdElimina"), std::pair(cmdOk, "cmdOk"), std::pair(cmdAnnulla, "cmdAnnulla")})
        button->setObjectName(QString::fromLatin1(name));
    auto *changes = new QVBoxLayout;
    changes->addWidget(cmdAggiungi);
    changes->addWidget(cmdModifica);
    changes->addWidget(cmdElimina);
    auto *ends = new QHBoxLayout;
    ends->addStretch();
    ends->addWidget(cmdOk);
    ends->addWidget(cmdAnnulla);

    auto *rows = new QGridLayout;
    rows->addWidget(m_grid, 0, 0, 1, 2);
    rows->addWidget(m_frame, 1, 0);
    rows->addLayout(changes, 1, 1);
    rows->addLayout(ends, 2, 0, 1, 2);
    rows->setRowStretch(0, 1);
    rows->setColumnStretch(0, 1);
    m_list = rows;
    auto *all = new QHBoxLayout(this);
    all->addLayout(rows, 1);
}

void GridEditor::setPicture(QWidget *picture)
{
    m_picture = picture;
    static_cast<QHBoxLayout *>(layout())->addWidget(picture);
}

void GridEditor::setCaptions()
{
    m_form = m_makeForm(m_texts);
    m_model->setCaptions(m_form.columns);
    setWindowTitle(TogliAnd(m_texts[m_form.title]));
    m_grid->setAccessibleName(windowTitle());
    m_firstLabel->setText(m_form.first.caption);
    m_lastLabel->setText(m_form.last.caption);
    // It has no caption of its own: its boxes say what is in it.
    m_frame->setAccessibleName(m_form.first.caption + QLatin1Char(' ') + m_form.last.caption);
    // Columns before those of the ends share what these leave, and are of one width.
    int shared = 0;
    for (int column = 0; column < m_form.firstEndColumn; ++column)
        shared = qMax(shared, m_grid->roomFor(column));
    const int end = m_grid->fontMetrics().horizontalAdvance(m_form.widest);
    QList<Grid::Column> columns;
    for (int column = 0; column < m_form.columns.size(); ++column) {
        const bool isEnd = column >= m_form.firstEndColumn;
        columns.append({isEnd ? m_grid->roomFor(column, end) : shared, !isEnd || m_form.firstEndColumn == 0});
    }
    m_grid->setColumns(std::move(columns));
    m_grid->setWantedRows(wantedRows);
    cmdAggiungi->setText(m_texts[Text::CmdAggiungi]);
    cmdModifica->setText(m_texts[Text::CmdModifica]);
    cmdElimina->setText(m_texts[Text::CmdElimina]);
    cmdOk->setText(m_texts[Text::CmdOk]);
    cmdAnnulla->setText(m_texts[Text::CmdAnnulla]);
    makeRoom(width());
}

bool GridEditor::open()
{
    if (const Result<void> opened = m_editor.open(); !opened) {
        showFault(underneath(), OwnText::ArchiveNotOpened, opened.fault());
        return false;
    }
    m_model->setRecordSet(&m_editor.set());
    cmdModifica->setEnabled(m_model->rowCount() > 0);
    // From here on only: the first row is current by itself, and the boxes stay free for a new entry.
    connect(m_grid->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
        grid_RowColChange();
        showPicture();
    });
    showPicture();
    return true;
}

void GridEditor::showMoment()
{
    // One that has closed has no rows any more.
    if (isVisible())
        showPicture();
}

void GridEditor::markRow(qsizetype row)
{
    m_grid->setCurrentIndex(m_model->index(static_cast<int>(row), qMax(0, m_grid->currentIndex().column())));
}

QSize GridEditor::wantedSize(QSize area) const
{
    makeRoom(area.width());
    return ChildWindow::wantedSize(area);
}

void GridEditor::resizeEvent(QResizeEvent *event)
{
    ChildWindow::resizeEvent(event);
    makeRoom(width());
}

void GridEditor::makeRoom(int width) const
{
    if (!m_picture)
        return;
    const int needed = m_list->sizeHint().width() + m_picture->minimumSizeHint().width();
    m_picture->setVisible(needed + fontMetrics().height() <= width - (this->width() - roomForContent()));
}

void GridEditor::grid_RowColChange()
{
    if (m_model->isFollowing() || m_grid->currentIndex().column() < m_form.firstEndColumn)
        return;
    m_first->setText(m_editor.set().value(m_form.first.field));
    m_last->setText(m_editor.set().value(m_form.last.field));
}

void GridEditor::cmdAggiungi_Click()
{
    const std::optional<Entry> entry = acceptedEntry();
    if (!entry)
        return;
    const Result<void> changed = m_editor.add(added(*entry));
    // A new row is the last one until the set is read anew.
    if (changed)
        m_editor.set().moveLast();
    finish(changed);
}

void GridEditor::cmdModifica_Click()
{
    if (const std::optional<Entry> entry = acceptedEntry())
        finish(m_editor.edit(modified(*entry)));
}

void GridEditor::cmdElimina_Click()
{
    if (m_model->rowCount() == 0)
        return;
    m_messages.ask(this, m_texts[m_form.askDelete], Messages::Buttons::YesNo, [this](Messages::Answer answer) {
        if (answer != Messages::Answer::Yes)
            return;
        const Result<void> removed = m_editor.remove();
        finish(removed);
        // What stood in the boxes would else be written over the follower by the next modification.
        if (removed)
            grid_RowColChange();
    });
}

void GridEditor::cmdOk_Click()
{
    if (const Result<void> saved = m_editor.save(); !saved)
        return showFault(this, OwnText::ArchiveNotSaved, saved.fault());
    Q_EMIT this->saved();
    unload();
}

void GridEditor::cmdAnnulla_Click()
{
    if (canClose())
        unload();
}

bool GridEditor::canClose()
{
    if (!m_editor.isChanged())
        return true;
    m_messages.ask(this, m_texts[Text::TuttiICambiamentiVerrannoAnnullati], Messages::Buttons::YesNo,
                   [this](Messages::Answer answer) {
                       if (answer == Messages::Answer::Yes)
                           unload();
                       else
                           refuseClose();
                   });
    return false;
}

bool GridEditor::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_grid && event->type() == QEvent::KeyPress && m_grid->currentIndex().isValid()) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Space && key->modifiers() == Qt::NoModifier) {
            if (!key->isAutoRepeat())
                cellPressed(m_grid->currentIndex().column());
            return true;
        }
    }
    return ChildWindow::eventFilter(watched, event);
}

/// What stands in the boxes when it may become a row, else nothing, and the operator knows why.
std::optional<GridEditor::Entry> GridEditor::acceptedEntry()
{
    Entry entry{m_first->text(), m_last->text()};
    const std::optional<Refusal> refusal = check(entry);
    if (m_last->text() != entry.last)
        m_last->setText(entry.last);
    if (refusal) {
        if (!refusal->message)
            return {};
        QLineEdit *faulty = refusal->box == Box::First ? m_first : m_last;
        faulty->setFocus();
        faulty->selectAll();
        m_messages.show(this, Icon::Exclamation, m_texts[*refusal->message]);
        return {};
    }
    if (m_editor.contains({{m_form.first.field, entry.first}, {m_form.last.field, entry.last}})) {
        m_messages.show(this, Icon::Exclamation, m_texts[m_form.isThere]);
        return {};
    }
    return entry;
}

/// Shows the set as it is after a change of rows. The current row stays current wherever it stands now; one that is
/// gone leaves its place to its follower, or to the last one.
void GridEditor::finish(Result<void> changed)
{
    RecordSet &set = m_editor.set();
    const qint64 row = set.rowId();
    if (changed)
        changed = m_editor.requery();
    set.moveToRow(row);
    m_model->refresh();
    m_grid->scrollTo(m_grid->currentIndex());
    cmdModifica->setEnabled(m_model->rowCount() > 0);
    showPicture();
    if (!changed)
        showFault(this, OwnText::ArchiveNotChanged, changed.fault());
}

void GridEditor::storeInPlace(const RecordSet::Values &values)
{
    const Result<void> stored = m_editor.edit(values);
    m_model->rowChanged();
    showPicture();
    if (!stored)
        showFault(this, OwnText::ArchiveNotChanged, stored.fault());
}

void GridEditor::showFault(QWidget *over, OwnText text, const Fault &fault)
{
    m_messages.show(over, Icon::Critical, m_texts.sentence({text, {m_editor.archive()}, fault}));
}
