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

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScopedValueRollback>

namespace {

constexpr int shownLines = 10;
constexpr double leastShareOfHeight = 0.8;
constexpr int shownCharacters = 10; ///< of a choice; the list below it is as wide as it must be
constexpr int longestHeading = 40;
constexpr qsizetype mostColumns = 50; ///< of a file, to choose from
constexpr int hundred = 100;

template<class Value>
void chooseValue(QComboBox *box, const Value &value)
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
      chkHeader(new QCheckBox),
      lblExisting(new QLabel),
      cmbExisting(new QComboBox),
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
    frmImport::setCaptions();
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
    const auto tie = [](QLabel *label, QComboBox *box, const char *of) {
        label->setObjectName(QLatin1String("lbl") + QLatin1String(of));
        box->setObjectName(QLatin1String("cmb") + QLatin1String(of));
        label->setBuddy(box);
        box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box->setMinimumContentsLength(shownCharacters);
    };
    name(fraFormat, "fraFormat");
    tie(lblSeparator, cmbSeparator, "Separator");
    fraFormat->add(lblSeparator, cmbSeparator);
    tie(lblEncoding, cmbEncoding, "Encoding");
    fraFormat->add(lblEncoding, cmbEncoding);
    for (size_t field = 0; field < ImportFieldCount; ++field) {
        tie(lblColumn.at(field), cmbColumn.at(field), userColumns.at(field).field);
        fraFormat->add(lblColumn.at(field), cmbColumn.at(field), field == 0 ? Fields::Row::New : Fields::Row::Same);
    }
    tie(lblExisting, cmbExisting, "Existing");
    cmbExisting->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    for (const char separator : {';', ',', '\t'})
        cmbSeparator->addItem(QString(QLatin1Char(separator)), separator);
    cmbEncoding->addItem(QStringLiteral("UTF-8"), int(TextEncoding::Utf8));
    cmbEncoding->addItem(QStringLiteral("Windows-1252"), int(TextEncoding::Windows1252));
    cmbExisting->addItem(QString(), false);
    cmbExisting->addItem(QString(), true);
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
    m_rows = new RowsModel(columns(), this);
    m_rows->bind(dbgrdRighe);
    dbgrdRighe->setWantedRows(shownLines);

    auto *ticks = new QHBoxLayout;
    ticks->addWidget(chkHeader);
    ticks->addStretch();
    ticks->addWidget(chkShorten);
    auto *existing = new QHBoxLayout;
    existing->addWidget(lblExisting);
    existing->addWidget(cmbExisting);
    existing->addStretch();
    existing->addWidget(chkOnlyRefused);
    auto *rows = new QVBoxLayout(this);
    rows->addWidget(fraFormat);
    rows->addLayout(ticks);
    rows->addLayout(existing);
    rows->addWidget(lblCounts);
    rows->addWidget(dbgrdRighe, 1);
    rows->addWidget(Bar);
    rows->addLayout(buttonRow({cmdSaveRefused, cmdImport, cmdAnnulla}));
}

QList<RowsModel::Column> frmImport::columns() const
{
    QList<RowsModel::Column> all = {
        {m_texts[OwnText::ImportLine]}, {m_texts[OwnText::ImportOutcome]}, {m_texts[OwnText::ImportReason]}};
    all[0].alignment = Qt::AlignRight | Qt::AlignVCenter;
    for (size_t field = 0; field < ImportFieldCount; ++field)
        all.append({m_texts[userColumns.at(field).caption]});
    const QStringList widest = widestCells();
    for (qsizetype column = 0; column < all.size(); ++column)
        all[column].widest = widest[column];
    all[1].widest = m_texts[OwnText::ImportChanged];
    for (const QString &reason :
         {m_texts[OwnText::ImportNotDigits], m_texts[OwnText::ImportOutOfRange], m_texts[OwnText::ImportRounded],
          m_texts[OwnText::ImportTooLong].arg(UserRegister::LongestText)}) {
        if (fontMetrics().horizontalAdvance(reason) > fontMetrics().horizontalAdvance(all[2].widest))
            all[2].widest = reason;
    }
    all[2].stretches = true;
    return all;
}

void frmImport::setCaptions()
{
    setWindowTitle(titleOf(m_texts[OwnText::MnuImportUsers]) + QStringLiteral(" - ") + QFileInfo(m_path).fileName());
    lblSeparator->setText(m_texts[OwnText::ImportSeparator]);
    cmbSeparator->setItemText(cmbSeparator->findData('\t'), m_texts[OwnText::ImportTab]);
    lblEncoding->setText(m_texts[OwnText::ImportEncoding]);
    lblExisting->setText(m_texts[OwnText::ImportExisting]);
    cmbExisting->setItemText(cmbExisting->findData(false), m_texts[OwnText::ImportFileWins]);
    cmbExisting->setItemText(cmbExisting->findData(true), m_texts[OwnText::ImportRegisterWins]);
    chkHeader->setText(m_texts[OwnText::ImportHeader]);
    chkShorten->setText(m_texts[OwnText::ImportShorten]);
    chkOnlyRefused->setText(m_texts[OwnText::ImportOnlyRefused]);
    for (QWidget *control : std::initializer_list<QWidget *>{fraFormat, dbgrdRighe, Bar})
        control->setAccessibleName(windowTitle());
    cmdSaveRefused->setText(m_texts[OwnText::ImportSaveRefused]);
    cmdImport->setText(m_texts[OwnText::CmdImport]);
    cmdAnnulla->setText(m_texts[Text::CmdAnnulla]);
    for (size_t field = 0; field < ImportFieldCount; ++field) {
        lblColumn.at(field)->setText(m_texts[userColumns.at(field).caption] + QLatin1Char(':'));
        nameColumns(cmbColumn.at(field));
    }
    m_rows->setCaptions(columns());
    if (m_isChecked)
        lblCounts->setText(countsText(m_texts, *m_check));
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
    showFormat(recognisedFormat(m_file.content(), m_file.isUtf8()));
}

/// Lets the controls say how the file is read, and reads it so.
void frmImport::showFormat(const ImportFormat &format)
{
    {
        const QScopedValueRollback shows(m_isShowing, true);
        chooseValue(cmbSeparator, format.separator);
        chooseValue(cmbEncoding, int(format.encoding));
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
        box->addItem(QString(), -1);
        for (int place = 0; place < first.size(); ++place)
            box->addItem(format.hasHeader ? first[place].simplified().left(longestHeading) : QString(), place);
        nameColumns(box);
        chooseValue(box, format.columns.at(field));
    }
}

/// Gives those columns words that have no heading.
void frmImport::nameColumns(QComboBox *box)
{
    for (int item = 0; item < box->count(); ++item) {
        const int place = box->itemData(item).toInt();
        if (place < 0)
            box->setItemText(item, m_texts[OwnText::ImportNoColumn]);
        else if (!chkHeader->isChecked())
            box->setItemText(item, m_texts[OwnText::ImportColumn].arg(place + 1));
    }
}

/// Another separator or encoding: the columns are recognised anew.
void frmImport::formatChanged()
{
    if (m_isShowing)
        return;
    const ImportFormat chosen = choices().format;
    showFormat(recognisedFormat(m_file.content(), chosen.separator, chosen.encoding));
}

void frmImport::chkHeader_Change()
{
    if (!m_isShowing)
        showFormat(choices().format);
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
