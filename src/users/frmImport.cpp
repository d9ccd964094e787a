#include "users/frmImport.h"

#include "codes/UserColumns.h"
#include "startup/PlainText.h"
#include "texts/OwnText.h"
#include "texts/Texts.h"
#include "users/ImportReport.h"
#include "widgets/Fields.h"
#include "widgets/Forms.h"
#include "widgets/Grid.h"
#include "widgets/Messages.h"
#include "widgets/RowsModel.h"
#include "widgets/SaveFile.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScopedValueRollback>

namespace {

constexpr int wantedRows = 10;
constexpr double leastShareOfHeight = 0.8;
constexpr int shownCharacters = 10; ///< of a choice; the list below it is as wide as it must be
constexpr int longestHeading = 40;
constexpr qsizetype mostColumns = 50; ///< of a file, to choose from
constexpr int hundred = 100;

template<class Value>
void choose(QComboBox *box, const Value &value)
{
    box->setCurrentIndex(qMax(0, box->findData(value)));
}

QStringList widestCells()
{
    QStringList widest = {QStringLiteral("000000"), QString(), QString()};
    for (size_t field = 0; field < ImportFieldCount; ++field)
        widest.append(QString::fromLatin1(userColumns.at(field).widest));
    return widest;
}

} // namespace

frmImport::frmImport(const Texts &texts, Messages &messages, UserRegister &users, const QString &file, QWidget *parent)
    : ChildWindow(QStringLiteral("frmImport"), parent),
      m_texts(texts),
      m_messages(messages),
      m_users(users),
      m_path(file),
      m_file(file, ImportCheck::LargestFile),
      m_runner(this),
      fraFormat(new Fields),
      lblSeparator(new QLabel),
      cmbSeparator(new QComboBox),
      lblEncoding(new QLabel),
      cmbEncoding(new QComboBox),
      lblExisting(new QLabel),
      cmbExisting(new QComboBox),
      chkHeader(new QCheckBox),
      chkShorten(new QCheckBox),
      lblCounts(new QLabel),
      chkOnlyRefused(new QCheckBox),
      dbgrdRighe(new Grid),
      Bar(new QProgressBar),
      cmdSaveRefused(new QPushButton),
      cmdImport(new QPushButton),
      cmdAnnulla(new QPushButton)
{
    for (size_t field = 0; field < ImportFieldCount; ++field) {
        lblColumn.at(field) = new QLabel;
        cmbColumn.at(field) = new QComboBox;
    }
    build();
    captions();
    connect(cmbSeparator, &QComboBox::currentIndexChanged, this, &frmImport::formatChanged);
    connect(cmbEncoding, &QComboBox::currentIndexChanged, this, &frmImport::formatChanged);
    connect(chkHeader, &QCheckBox::toggled, this, &frmImport::chkHeader_Change);
    for (QComboBox *box : cmbColumn)
        connect(box, &QComboBox::currentIndexChanged, this, &frmImport::check);
    connect(cmbExisting, &QComboBox::currentIndexChanged, this, &frmImport::check);
    connect(chkShorten, &QCheckBox::toggled, this, &frmImport::check);
    connect(chkOnlyRefused, &QCheckBox::toggled, this, &frmImport::showLines);
    connect(cmdSaveRefused, &QPushButton::clicked, this, &frmImport::cmdSaveRefused_Click);
    connect(cmdImport, &QPushButton::clicked, this, &frmImport::cmdImport_Click);
    connect(cmdAnnulla, &QPushButton::clicked, this, &frmImport::cmdAnnulla_Click);
    connect(&m_runner, &TaskRunner::progressed, this, [this](const Task::Progress &progress) {
        Bar->setValue(static_cast<int>(hundred * progress.done / qMax<qint64>(1, progress.count)));
    });
    // What hangs on the working copy goes before that.
    connect(this, &ChildWindow::unloaded, this, [this] {
        m_hasUnloaded = true;
        m_import.reset();
    });
    setKeys(nullptr, cmdAnnulla);
    setKeepsPlace();
    setLeastHeight(leastShareOfHeight);
    setReady(false);
}

frmImport::~frmImport()
{
    // The grid lives longer than the lines.
    m_rows->setRows(0, {});
    m_runner.stop();
}

void frmImport::build()
{
    const auto name = [](QWidget *control, const char *text) { control->setObjectName(QString::fromLatin1(text)); };
    const auto place = [&](QLabel *label, QComboBox *box, const char *of, Fields::Row row = Fields::Row::Same) {
        label->setObjectName(QLatin1String("lbl") + QLatin1String(of));
        box->setObjectName(QLatin1String("cmb") + QLatin1String(of));
        label->setBuddy(box);
        box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box->setMinimumContentsLength(shownCharacters);
        fraFormat->add(label, box, row);
    };
    name(fraFormat, "fraFormat");
    place(lblSeparator, cmbSeparator, "Separator");
    place(lblEncoding, cmbEncoding, "Encoding");
    place(lblExisting, cmbExisting, "Existing");
    for (size_t field = 0; field < ImportFieldCount; ++field)
        place(lblColumn.at(field), cmbColumn.at(field), userColumns.at(field).field,
              field == 0 ? Fields::Row::New : Fields::Row::Same);
    name(chkHeader, "chkHeader");
    name(chkShorten, "chkShorten");
    name(chkOnlyRefused, "chkOnlyRefused");
    name(lblCounts, "lblCounts");
    name(dbgrdRighe, "dbgrdRighe");
    name(Bar, "Bar");
    name(cmdSaveRefused, "cmdSaveRefused");
    name(cmdImport, "cmdImport");
    name(cmdAnnulla, "cmdAnnulla");
    lblCounts->setTextFormat(Qt::PlainText);
    Bar->setRange(0, hundred);
    Bar->setTextVisible(false);

    auto *ticks = new QHBoxLayout;
    ticks->addWidget(chkHeader);
    ticks->addWidget(chkShorten);
    ticks->addStretch();
    auto *filter = new QHBoxLayout;
    filter->addWidget(chkOnlyRefused);
    filter->addStretch();
    auto *rows = new QVBoxLayout(this);
    rows->addWidget(fraFormat);
    rows->addLayout(ticks);
    rows->addWidget(lblCounts);
    rows->addLayout(filter);
    rows->addWidget(dbgrdRighe, 1);
    rows->addWidget(Bar);
    rows->addLayout(buttonRow({cmdSaveRefused, cmdImport, cmdAnnulla}));
}

void frmImport::captions()
{
    setWindowTitle(TogliAnd(m_texts[OwnText::MnuImportUsers]).remove(QChar(0x2026)) + QStringLiteral(" - ") +
                   QFileInfo(m_path).fileName());
    lblSeparator->setText(m_texts[OwnText::ImportSeparator]);
    cmbSeparator->addItem(QStringLiteral(";"), ';');
    cmbSeparator->addItem(QStringLiteral(","), ',');
    cmbSeparator->addItem(m_texts[OwnText::ImportTab], '\t');
    lblEncoding->setText(m_texts[OwnText::ImportEncoding]);
    cmbEncoding->addItem(QStringLiteral("UTF-8"), int(TextEncoding::Utf8));
    cmbEncoding->addItem(QStringLiteral("Windows-1252"), int(TextEncoding::Windows1252));
    lblExisting->setText(m_texts[OwnText::ImportExisting]);
    cmbExisting->addItem(m_texts[OwnText::ImportFileWins], false);
    cmbExisting->addItem(m_texts[OwnText::ImportRegisterWins], true);
    chkHeader->setText(m_texts[OwnText::ImportHeader]);
    chkShorten->setText(m_texts[OwnText::ImportShorten]);
    chkOnlyRefused->setText(m_texts[OwnText::ImportOnlyRefused]);
    Bar->setAccessibleName(windowTitle());
    cmdSaveRefused->setText(m_texts[OwnText::ImportSaveRefused]);
    cmdImport->setText(m_texts[OwnText::CmdImport]);
    cmdAnnulla->setText(m_texts[Text::CmdAnnulla]);

    QList<RowsModel::Column> columns = {
        {m_texts[OwnText::ImportLine]}, {m_texts[OwnText::ImportOutcome]}, {m_texts[OwnText::ImportReason]}};
    columns[0].alignment = Qt::AlignRight | Qt::AlignVCenter;
    for (size_t field = 0; field < ImportFieldCount; ++field) {
        const QString caption = m_texts[userColumns.at(field).caption];
        lblColumn.at(field)->setText(caption + QLatin1Char(':'));
        columns.append({caption});
    }
    const QStringList widest = widestCells();
    for (qsizetype column = 0; column < columns.size(); ++column)
        columns[column].widest = widest[column];
    columns[1].widest = m_texts[OwnText::ImportChanged];
    columns[2].widest = m_texts[OwnText::ImportOutOfRange];
    columns[2].stretches = true;
    m_rows = new RowsModel(std::move(columns), this);
    m_rows->bind(dbgrdRighe);
    dbgrdRighe->setAccessibleName(windowTitle());
    dbgrdRighe->setWantedRows(wantedRows);
}

void frmImport::resizeEvent(QResizeEvent *event)
{
    ChildWindow::resizeEvent(event);
    fraFormat->fit(roomForContent());
}

// The file -----------------------------------------------------------------------------------------------------------

bool frmImport::open()
{
    m_runner.run(m_file, {}, [this](const Result<void> &read) { fileRead(read); });
    return true;
}

void frmImport::fileRead(const Result<void> &read)
{
    if (!read) {
        m_messages.show(underneath(), Icon::Critical,
                        m_texts.sentence({OwnText::ImportNotPossible, {m_path}, read.fault()}));
        return end({});
    }
    show(recognisedFormat(m_file.content(), m_file.isUtf8()));
}

/// Lets the controls say how the file is read, and reads it so.
void frmImport::show(const ImportFormat &format)
{
    {
        const QScopedValueRollback shows(m_isShowing, true);
        choose(cmbSeparator, format.separator);
        choose(cmbEncoding, int(format.encoding));
        chkHeader->setChecked(format.hasHeader);
        fillColumns(format);
    }
    check();
}

void frmImport::fillColumns(const ImportFormat &format)
{
    const QStringList first = firstFields(m_file.content(), format).mid(0, mostColumns);
    for (size_t field = 0; field < ImportFieldCount; ++field) {
        QComboBox *box = cmbColumn.at(field);
        box->clear();
        box->addItem(m_texts[OwnText::ImportNoColumn], -1);
        for (int place = 0; place < first.size(); ++place)
            box->addItem(format.hasHeader ? first[place].simplified().left(longestHeading)
                                          : m_texts[OwnText::ImportColumn].arg(place + 1),
                         place);
        choose(box, format.columns.at(field));
    }
}

/// Another separator or encoding: the columns are recognised anew.
void frmImport::formatChanged()
{
    if (m_isShowing)
        return;
    const ImportFormat chosen = choices().format;
    show(recognisedFormat(m_file.content(), chosen.separator, chosen.encoding));
}

void frmImport::chkHeader_Change()
{
    if (!m_isShowing)
        show(choices().format);
}

ImportChoices frmImport::choices() const
{
    ImportChoices chosen;
    chosen.format.separator = static_cast<char>(cmbSeparator->currentData().toInt());
    chosen.format.encoding = TextEncoding(cmbEncoding->currentData().toInt());
    chosen.format.hasHeader = chkHeader->isChecked();
    for (size_t field = 0; field < ImportFieldCount; ++field)
        chosen.format.columns.at(field) = cmbColumn.at(field)->currentData().toInt();
    chosen.keepsNames = cmbExisting->currentData().toBool();
    chosen.shortens = chkShorten->isChecked();
    return chosen;
}

// The dry run --------------------------------------------------------------------------------------------------------

void frmImport::check()
{
    if (m_isShowing)
        return;
    m_runner.stop();
    m_rows->setRows(0, {});
    setReady(false);
    m_check = std::make_unique<ImportCheck>(m_file.content(), choices(), UserRows(m_users.users()));
    m_runner.run(*m_check, {}, [this](const Result<void> &result) { checked(result); });
}

void frmImport::checked(const Result<void> &result)
{
    Bar->setValue(hundred);
    if (!result) {
        lblCounts->clear();
        return m_messages.show(
            this, Icon::Critical,
            m_texts.sentence({OwnText::ImportBrokenOff, {m_path, result.fault().subject}, result.fault()}));
    }
    lblCounts->setText(countsText(m_texts, *m_check));
    showLines();
    setReady(true);
}

void frmImport::showLines()
{
    if (!m_check || m_runner.isRunning())
        return;
    const bool onlyRefused = chkOnlyRefused->isChecked();
    const qsizetype count = onlyRefused ? m_check->refused().size() : m_check->lines().size();
    m_rows->setRows(count, [this, onlyRefused](qsizetype row) {
        const ImportLine &line = m_check->lines()[onlyRefused ? m_check->refused()[row] : row];
        QStringList cells = {QString::number(line.number), outcomeText(m_texts, line.outcome),
                             reasonText(m_texts, line)};
        for (const QString &field : line.fields)
            cells.append(field);
        return cells;
    });
}

/// What can be done with the lines. @param isChecked  they are known
void frmImport::setReady(bool isChecked)
{
    const bool hasWork = isChecked && m_check->count(ImportOutcome::New) + m_check->count(ImportOutcome::Changed) > 0;
    cmdImport->setEnabled(hasWork);
    cmdSaveRefused->setEnabled(isChecked && !m_check->refused().isEmpty());
}

// What comes of it ---------------------------------------------------------------------------------------------------

void frmImport::cmdSaveRefused_Click()
{
    const FileToSave wanted = {TogliAnd(cmdSaveRefused->text()).remove(QChar(0x2026)),
                               m_texts[OwnText::CsvFiles] + QStringLiteral(" (*.csv)"), QStringLiteral(".csv")};
    askFileToSave(this, m_messages, m_texts, wanted, [this](const QString &file) {
        if (!file.isEmpty() && m_check && !m_runner.isRunning())
            saveRefused(file);
    });
}

void frmImport::saveRefused(const QString &file)
{
    setEnabled(false);
    m_runner.run(refusedFile(m_users.disk(), file, m_texts, choices().format.separator, *m_check), {},
                 [this, file](const Result<void> &written) {
                     setEnabled(true);
                     takeKeyboard();
                     if (!written)
                         m_messages.show(this, Icon::Exclamation,
                                         m_texts.sentence({OwnText::FileNotWritten, {file}, written.fault()}));
                 });
}

void frmImport::cmdImport_Click()
{
    Result<std::unique_ptr<Task>> import = m_users.importing(m_check->lines());
    if (!import)
        return imported(import.fault());
    m_import = std::move(import.value());
    // What has begun is not cancelled: the window refuses to close while it is disabled.
    setEnabled(false);
    m_runner.run(*m_import, {}, [this](const Result<void> &result) { imported(result); });
}

void frmImport::imported(const Result<void> &result)
{
    m_import.reset();
    if (!result) {
        setEnabled(true);
        return m_messages.show(this, Icon::Critical,
                               m_texts.sentence({OwnText::ArchiveNotChanged, {m_users.archive()}, result.fault()}));
    }
    end(m_texts[OwnText::UsersImported]
            .arg(m_check->count(ImportOutcome::New))
            .arg(m_check->count(ImportOutcome::Changed)));
}

void frmImport::cmdAnnulla_Click()
{
    end({});
}

bool frmImport::canClose()
{
    Q_EMIT Chiudi({});
    return true;
}

void frmImport::end(const QString &said)
{
    if (m_hasUnloaded)
        return;
    Q_EMIT Chiudi(said);
    unload();
}
