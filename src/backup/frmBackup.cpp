#include "backup/frmBackup.h"

#include "backup/DailyBackup.h"
#include "startup/PlainText.h"
#include "texts/DateTimeText.h"
#include "texts/OwnText.h"
#include "texts/Texts.h"
#include "widgets/Forms.h"
#include "widgets/Messages.h"
#include "widgets/Twips.h"

#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimeEdit>

namespace {

/// The day of an archive as the operator writes it, another file by its name.
QString shownName(const QString &file)
{
    const QString name = file.section(QLatin1Char('/'), -1);
    const QString start = QStringLiteral("Eventi_");
    const QDate day =
        name.startsWith(start, Qt::CaseInsensitive) ? dayOfFile(QStringView(name).mid(start.size(), 10)) : QDate();
    return day.isValid() ? DataBarre(day) : name;
}

} // namespace

frmBackup::frmBackup(const Texts &texts, DailyBackup &backup, Messages &messages, QWidget *parent)
    : ChildWindow(QStringLiteral("frmBackup"), parent),
      m_texts(texts),
      m_backup(backup),
      m_messages(messages),
      lblFolder(new QLabel),
      txtFolder(new QLineEdit(backup.plan().folder)),
      cmdFolder(new QPushButton),
      chkDaily(new QCheckBox),
      txtTime(new QTimeEdit(backup.plan().at)),
      lblLast(new QLabel),
      lblState(new QLabel),
      prgBackup(new QProgressBar),
      cmdNow(new QPushButton),
      cmdStop(new QPushButton),
      cmdChiudi(new QPushButton)
{
    auto *daily = new QHBoxLayout;
    daily->addWidget(chkDaily);
    daily->addWidget(txtTime);
    daily->addStretch();
    auto *place = new QGridLayout;
    place->addWidget(lblFolder, 0, 0);
    place->addWidget(txtFolder, 0, 1);
    place->addWidget(cmdFolder, 0, 2);
    place->setColumnStretch(1, 1);
    auto *rows = new QVBoxLayout(this);
    rows->addLayout(place);
    rows->addLayout(daily);
    rows->addWidget(lblLast);
    rows->addWidget(prgBackup);
    rows->addWidget(lblState);
    rows->addSpacing(pixels(120));
    rows->addStretch();
    rows->addLayout(buttonRow({cmdNow, cmdStop, cmdChiudi}));
    lblFolder->setBuddy(txtFolder);
    txtFolder->setMinimumWidth(pixels(3600));
    txtTime->setDisplayFormat(QStringLiteral("HH:mm"));
    for (QLabel *label : {lblLast, lblState})
        label->setTextFormat(Qt::PlainText);

    lblFolder->setObjectName(QStringLiteral("lblFolder"));
    txtFolder->setObjectName(QStringLiteral("txtFolder"));
    cmdFolder->setObjectName(QStringLiteral("cmdFolder"));
    chkDaily->setObjectName(QStringLiteral("chkDaily"));
    txtTime->setObjectName(QStringLiteral("txtTime"));
    lblLast->setObjectName(QStringLiteral("lblLast"));
    lblState->setObjectName(QStringLiteral("lblState"));
    prgBackup->setObjectName(QStringLiteral("prgBackup"));
    cmdNow->setObjectName(QStringLiteral("cmdNow"));
    cmdStop->setObjectName(QStringLiteral("cmdStop"));
    cmdChiudi->setObjectName(QStringLiteral("cmdChiudi"));

    connect(cmdFolder, &QPushButton::clicked, this, &frmBackup::cmdFolder_Click);
    connect(chkDaily, &QCheckBox::toggled, txtTime, &QWidget::setEnabled);
    connect(cmdNow, &QPushButton::clicked, this, &frmBackup::cmdNow_Click);
    connect(cmdStop, &QPushButton::clicked, this, &frmBackup::cmdStop_Click);
    connect(cmdChiudi, &QPushButton::clicked, this, &frmBackup::cmdChiudi_Click);
    connect(&backup, &DailyBackup::progressed, this, &frmBackup::showState);
    connect(&backup, &DailyBackup::ended, this, &frmBackup::showEnd);
    setKeys(cmdNow, cmdChiudi);

    chkDaily->setChecked(backup.plan().isDaily);
    txtTime->setEnabled(backup.plan().isDaily);
    frmBackup::setCaptions();
    txtFolder->setFocus();
}

void frmBackup::setCaptions()
{
    setWindowTitle(TogliAnd(m_texts[OwnText::MnuBackup]));
    fitTitle(this);
    lblFolder->setText(m_texts[OwnText::BackupFolder]);
    cmdFolder->setText(m_texts[OwnText::BackupChoose]);
    chkDaily->setText(m_texts[OwnText::BackupDaily]);
    txtTime->setAccessibleName(TogliAnd(m_texts[OwnText::BackupDaily]));
    prgBackup->setAccessibleName(windowTitle());
    cmdNow->setText(m_texts[OwnText::BackupNow]);
    cmdStop->setText(m_texts[OwnText::BackupStop]);
    cmdChiudi->setText(m_texts[Text::CmdChiudi]);
    tell(m_state);
    showState();
}

void frmBackup::cmdFolder_Click()
{
    auto *dialog = new QFileDialog(this, TogliAnd(m_texts[OwnText::BackupFolder]), folder());
    dialog->setObjectName(QStringLiteral("ComDial"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOptions(QFileDialog::ShowDirsOnly | QFileDialog::DontUseNativeDialog);
    connect(dialog, &QFileDialog::fileSelected, txtFolder, &QLineEdit::setText);
    dialog->open();
}

void frmBackup::cmdNow_Click()
{
    if (folder().isEmpty())
        return refuse(m_texts[OwnText::BackupNoFolder]);
    if (const std::optional<QString> fault = faultOfPlan())
        return refuse(*fault);
    store();
    if (const Result<void> begun = m_backup.copyNow(); !begun)
        refuse(m_texts.sentence(m_backup.messageOf(begun.fault(), false)));
}

void frmBackup::cmdStop_Click()
{
    m_backup.stop();
    showState();
    prgBackup->reset();
    tell(Message{OwnText::BackupStopped, {}, {}});
}

void frmBackup::cmdChiudi_Click()
{
    if (canClose())
        unload();
}

/// What is copied at the moment, and which buttons make sense.
void frmBackup::showState()
{
    const bool isRunning = m_backup.isRunning();
    for (QWidget *control : std::initializer_list<QWidget *>{txtFolder, cmdFolder, chkDaily, cmdNow})
        control->setEnabled(!isRunning);
    txtTime->setEnabled(!isRunning && chkDaily->isChecked());
    cmdStop->setEnabled(isRunning);
    const QDateTime last = m_backup.plan().lastSuccess;
    lblLast->setText(
        m_texts[OwnText::BackupLast].arg(last.isValid() ? dayAndTime(last) : m_texts[OwnText::BackupNever]));
    if (isRunning) {
        const Task::Progress progress = m_backup.progress();
        const qint64 kibibytes = 1024;
        prgBackup->setRange(0, static_cast<int>(qMax<qint64>(1, progress.count / kibibytes)));
        prgBackup->setValue(static_cast<int>(progress.done / kibibytes));
    }
    if (const QString file = m_backup.file(); !file.isEmpty())
        tell(Message{OwnText::BackupCopying, {shownName(file)}, {}});
}

void frmBackup::tell(std::optional<Message> state)
{
    m_state = std::move(state);
    lblState->setText(m_state ? m_texts.sentence(*m_state) : QString());
}

void frmBackup::showEnd(const Result<void> &result, int copied)
{
    showState();
    // What is done is all of it; what has failed is not somewhere on its way.
    if (result)
        prgBackup->setValue(prgBackup->maximum());
    else
        prgBackup->reset();
    tell(result ? std::optional(Message{OwnText::BackupDone, {QString::number(copied)}, {}}) : std::nullopt);
    if (!result && !m_backup.isDaily())
        refuse(m_texts.sentence(m_backup.messageOf(result.fault(), false)));
}

QString frmBackup::folder() const
{
    return txtFolder->text().isEmpty() ? QString() : QDir(txtFolder->text()).absolutePath();
}

bool frmBackup::canClose()
{
    const BackupPlan &plan = m_backup.plan();
    const bool isAsBefore = folder() == plan.folder && chkDaily->isChecked() == plan.isDaily &&
                            (txtTime->time() == plan.at || !plan.isDaily);
    if (m_backup.isRunning() || isAsBefore)
        return true;
    const std::optional<QString> fault = faultOfPlan();
    if (!fault) {
        store();
        return true;
    }
    // Whoever only looked around must get out again.
    m_messages.ask(this, *fault + QStringLiteral("\r\n") + m_texts[Text::TuttiICambiamentiVerrannoAnnullati],
                   Messages::Buttons::YesNo, [this](Messages::Answer answer) {
                       if (answer == Messages::Answer::Yes)
                           return unload();
                       chooseFolder();
                       refuseClose();
                   });
    return false;
}

/// Why a copy cannot be made every day as the window says; nothing when it can, or need not be.
std::optional<QString> frmBackup::faultOfPlan() const
{
    if (!chkDaily->isChecked())
        return {};
    if (folder().isEmpty())
        return m_texts[OwnText::BackupNoFolder];
    // A folder that is not there for the moment was one once.
    const bool isNew = folder() != m_backup.plan().folder || !m_backup.plan().isDaily;
    if (const Result<void> checked = isNew ? m_backup.check(folder()) : Result<void>(); !checked)
        return m_texts.sentence({OwnText::BackupNotMade, {folder()}, checked.fault()});
    return {};
}

/// Takes over what the window says.
void frmBackup::store()
{
    const Result<void> stored = m_backup.setPlan(folder(), chkDaily->isChecked(), txtTime->time());
    if (!stored)
        m_messages.show(underneath(), Icon::Exclamation,
                        m_texts.sentence({OwnText::SettingNotSaved, {stored.fault().subject}, stored.fault()}));
}

/// Says why not, and lets the operator choose another folder.
void frmBackup::refuse(const QString &text)
{
    m_messages.show(this, Icon::Exclamation, text, [this] { chooseFolder(); });
}

void frmBackup::chooseFolder()
{
    txtFolder->setFocus();
    txtFolder->selectAll();
}
