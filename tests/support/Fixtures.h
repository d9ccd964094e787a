#pragma once

#include "archives/ArchiveStore.h"
#include "archives/RecordSet.h"
#include "archives/Tables.h"
#include "link/EventLog.h"
#include "link/EventRecord.h"
#include "platform/Clock.h"
#include "platform/Printers.h"
#include "prefs/Passwords.h"
#include "texts/Notices.h"
#include "texts/Texts.h"

#include <QFile>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

using namespace Qt::StringLiterals;

namespace ArchiveName {

/// The archive of a day "dd-mm-yyyy", be there such a day or not.
inline QString events(const QString &day)
{
    return u"Archivi/Eventi_"_s + day + u".zeb"_s;
}

} // namespace ArchiveName

/// Makes the columns of a test's table, then its rows.
template<class... Values>
class Rows
{
public:
    template<class... Names>
    explicit Rows(Names... names)
    {
        (QTest::addColumn<Values>(names), ...);
    }
    void operator()(const char *tag, const Values &...values) const
    {
        QTestData &row = QTest::newRow(tag);
        ((row << values), ...);
    }
};

/// @p words without the commas between them; nothing is no word.
inline QStringList listOf(const char *words)
{
    return QString::fromLatin1(words).split(u',', Qt::SkipEmptyParts);
}

/// The fault's code, -1 for none.
template<class Value>
int codeOf(const Result<Value> &result)
{
    return result ? -1 : static_cast<int>(result.fault().code);
}

/// A clock that the test turns.
class FakeClock : public Clock
{
public:
    QDateTime moment = QDateTime(QDate(2004, 3, 5), QTime(7, 45, 0));
    qint64 milliseconds = 1'000'000;
    qint64 slept = 0;

    QDateTime now() const override { return moment; }
    qint64 monotonic() const override { return milliseconds; }
    qint64 asleep() const override { return slept; }
};

/// A print system that keeps what it is sent, takes or refuses it, and answers when it may.
class FakePrintSystem : public PrintSystem
{
public:
    struct Sent {
        QString printer, title, file;
        QByteArray document;
    };

    QStringList installed;
    QString byDefault;
    FaultCode says = FaultCode::NotOpen; ///< another one refuses

    /// Answers so many more times, rather than always.
    void allow(int answers)
    {
        m_answers.tryAcquire(m_answers.available());
        m_answers.release(answers);
    }
    Result<PrinterList> list() const override
    {
        m_answers.acquire();
        return PrinterList{installed, byDefault};
    }
    Result<Paper> paper(const QString &) const override { return Paper{}; }
    Result<void> send(const QString &printer, const QString &file, const QString &title) const override
    {
        QFile document(file);
        const bool isThere = document.open(QIODevice::ReadOnly);
        {
            const std::lock_guard lock(m_mutex);
            m_sent.append({printer, title, file, isThere ? document.readAll() : QByteArray()});
        }
        m_answers.acquire();
        return says == FaultCode::NotOpen ? Result<void>() : Fault{says, printer};
    }
    QList<Sent> sent() const
    {
        const std::lock_guard lock(m_mutex);
        return m_sent;
    }

private:
    mutable std::mutex m_mutex;
    mutable QList<Sent> m_sent;
    mutable QSemaphore m_answers{1 << 20};
};

class FakePrinters : public Printers
{
public:
    /// @param patience  long enough for the slowest machine
    explicit FakePrinters(std::chrono::milliseconds patience = std::chrono::hours(1))
        : FakePrinters(std::make_shared<FakePrintSystem>(), patience)
    {
    }

    FakePrintSystem &fake;
    QStringList &installed = fake.installed;
    QString &byDefault = fake.byDefault;

private:
    FakePrinters(const std::shared_ptr<FakePrintSystem> &made, std::chrono::milliseconds patience)
        : Printers(made, patience), fake(*made)
    {
    }
};

/// A disk that notes its steps, and from a given step on does nothing any more, as if the power had been cut.
class FakeDisk : public Disk
{
public:
    QStringList steps;                        ///< "write Setup.tmp"
    int stopAt = -1;                          ///< number of steps that are still carried out, -1 = all
    bool goesOn = false;                      ///< after the one step that fails, as a disk that was full
    int failed = 0;                           ///< steps that were not carried out
    FaultCode fault = FaultCode::InputOutput; ///< of those

protected:
    Result<void> before(Step step, const QString &path) override;
};

/// A program folder with nothing in it, removed at the end.
class BareFolder
{
public:
    FakeDisk disk;
    QTemporaryDir directory;
    ProgramFolder folder{directory.path(), disk};

    QByteArray read(const QString &name) const;
    void write(const QString &name, const QByteArray &content) const;
    QStringList files(const QString &name = {}) const;
};

/// The same with the five templates.
class TestFolder : public BareFolder
{
public:
    TestFolder();

    ArchiveStore archives{folder};

    /// Zeroes the last page of an archive.
    void damage(const QString &name) const;
    /// Puts users "code type surname name" into the register, which is made when it is not there.
    void addUsers(const QList<QStringList> &users);
    /// Puts events "Codice Tipo Canale AbCh KorDis Ora" into the archive of a day, which is made when it is not there.
    /// @param day  "dd-mm-yyyy"
    void addEvents(const QString &day, const QList<QStringList> &events);
    /// Sets a password of the register.
    void setPassword(const QString &password, Passwords::Type type = Passwords::Type::Main);
    /// Changes an archive, as another program would.
    void execute(QStringView archive, const QByteArray &sql) { (void)hold(archive, sql); }
    /// The same with what stays open, and keeps others out, as long as the result lives.
    Database hold(QStringView archive, const QByteArray &sql = "BEGIN EXCLUSIVE");
    /// All rows of a statement on one archive, fields joined by "|"; a fault reads as "FAULT <code>".
    QStringList rows(QStringView archive, const QString &statement);
};

/// "code|Data|Ora|Tipo|Canale|AbCh|KorDis|DataOrd"
QString asText(const Event &event);

/// Memory of this process that is resident, in pages.
qint64 residentPages();

Texts textsIn(int language = 2);
QString english(const Message &message);

/// How many events wait, as the status bar has it: those in memory where there are any, else those on disk.
qsizetype waiting(const EventLog &log);
/// What could be read of archives of the day that were set aside stands in @p archive.
bool isRescued(ArchiveStore &archives, const QString &archive);

/// Texts of the notices that wait, in English, which are taken.
QStringList takeNotices(Notices &notices);
