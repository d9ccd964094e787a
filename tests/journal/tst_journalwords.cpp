// What the operator reads of the service journal.

#include "journal/CoverageWords.h"
#include "journal/JournalReport.h"
#include "journal/JournalWords.h"
#include "support/Fixtures.h"
#include "support/RecordedPage.h"

class TestJournalWords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rows_data()
    {
        using Kind = JournalKind;
        using Group = JournalGroup;
        const Rows<Kind, QString, QString, Group, QString> row("kind", "first", "second", "group", "words");
        const QString at = u"2026-10-25T02:30:05+02:00"_s, later = u"2026-10-25T04:30:05+01:00"_s;
        const QString range = u"25/10/2026 - 26/10/2026, 00:00:00 - 23:59:59"_s;
        row("FoundCutOff", Kind::FoundCutOff, at, {}, Group::Service,
            u"Program was cut off; last sign of life: 25/10/2026 02:30:05"_s);
        row("no sign", Kind::FoundCutOff, {}, {}, Group::Service, u"Program was cut off; last sign of life: ?"_s);
        row("ClockMoved", Kind::ClockMoved, at, later, Group::Service,
            u"Clock moved: from 25/10/2026 02:30:05 to 25/10/2026 04:30:05"_s);
        row("PortLost", Kind::PortLost, u"7"_s, {}, Group::Link,
            u"The serial port COM7 was unplugged or no longer answers."_s);
        row("PortNotAvailable", Kind::PortNotAvailable, u"7"_s, u"2"_s, Group::Link,
            u"Serial port COM7 not available: already in use"_s);
        row("fault of later", Kind::PortNotAvailable, u"7"_s, u"999"_s, Group::Link,
            u"Serial port COM7 not available"_s);
        row("InterfaceSilent", Kind::InterfaceSilent, at, {}, Group::Link,
            u"The interface does not answer; last sign: 25/10/2026 02:30:05"_s);
        row("never heard", Kind::InterfaceSilent, {}, {}, Group::Link, u"The interface does not answer"_s);
        row("ConfigurationDiffers", Kind::ConfigurationDiffers, u"5"_s, u"1 3"_s, Group::Link,
            u"Interface configuration changed; enabled channels: 1 3"_s);
        row("Disabled", Kind::Disabled, u"3"_s, {}, Group::Enabling, u"Interface disabled (program end)"_s);
        row("cause of later", Kind::Disabled, u"9"_s, {}, Group::Enabling, u"Interface disabled (9)"_s);
        row("RegisterSaved", Kind::RegisterSaved, u"3,0,12"_s, {}, Group::Changes,
            u"User list saved: added 3, changed 0, deleted 12"_s);
        row("not counted", Kind::RegisterSaved, {}, {}, Group::Changes, u"User list saved"_s);
        row("SettingChanged", Kind::SettingChanged, u"COM"_s, u"7"_s, Group::Changes,
            u"Setting changed: Serial Port Settings = 7"_s);
        row("language", Kind::SettingChanged, u"LINGUA"_s, u"4"_s, Group::Changes,
            u"Setting changed: Language = Deutsch"_s);
        row("no value", Kind::SettingChanged, u"BKPFOLDER"_s, {}, Group::Changes, u"Setting changed: Backup copy"_s);
        row("key of later", Kind::SettingChanged, u"NEWKEY"_s, u"1"_s, Group::Changes,
            u"Setting changed: NEWKEY = 1"_s);
        row("PasswordSet", Kind::PasswordSet, u"1"_s, {}, Group::Changes, u"Password set (main)"_s);
        row("PasswordWrong", Kind::PasswordWrong, u"3"_s, {}, Group::Changes, u"Wrong password (diagnostics)"_s);
        row("which of later", Kind::PasswordWrong, u"x"_s, {}, Group::Changes, u"Wrong password (x)"_s);
        row("Searched", Kind::Searched, range, u"5"_s, Group::Changes,
            u"Events searched: "_s + range + u"; found: 5"_s);
        row("BackupFailed", Kind::BackupFailed, u"4"_s, {}, Group::Faults, u"Backup copy failed: disk full"_s);
        row("Pruned", Kind::Pruned, u"2004-01-01"_s, u"7"_s, Group::Changes,
            u"Archives before 01/01/2004 deleted: 7"_s);
        row("kind of later", Kind(79), u"1"_s, {}, Group::Changes, u"Entry of a later version (kind 79)"_s);
        row("group of later", Kind(120), {}, {}, Group::Service, u"Entry of a later version (kind 120)"_s);
    }
    void rows()
    {
        QFETCH(JournalKind, kind);
        QFETCH(QString, first);
        QFETCH(QString, second);
        QFETCH(JournalGroup, group);
        QFETCH(QString, words);
        const JournalRow row = {1, {}, kind, first, second};
        QCOMPARE(groupOf(kind), group);
        QStringList all;
        for (int language = Texts::FirstLanguage; language <= Texts::LastLanguage; ++language)
            all.append(rowWords(row, textsIn(language)));
        QCOMPARE(all[1], words);
        QVERIFY2(!all.join(u' ').contains(u'%') && all.removeDuplicates() <= 1, qPrintable(all.join(u'|')));
    }

    void coverage_data()
    {
        const Rows<Missing, int, QString> row("missing", "language", "words");
        row("throughout", {}, 2, u"The program listened throughout."_s);
        row("twice", {{2, 11'530}, {}}, 2, u"Not listening: 2 times, 3 h 12 min in all"_s);
        row("once, seconds", {{1, 59}, {}}, 1, u"Non in ascolto: una volta, in tutto 59 s"_s);
        row("minutes", {{2, 3599}, {}}, 3, u"Pas à l'écoute\u00A0: 2 fois, 59 min 59 s en tout"_s);
        row("not known", {{}, {1, 172'799}}, 4, u"Nicht bekannt, ob empfangsbereit: einmal, insgesamt 47 h 59 min"_s);
        row("both, days", {{3, 60}, {1, 180'000}}, 2,
            u"Not listening: 3 times, 1 min in all. Not known whether listening: once, 2 days 2 h in all"_s);
    }
    void coverage()
    {
        QFETCH(Missing, missing);
        QFETCH(int, language);
        QFETCH(QString, words);
        QCOMPARE(coverageWords(missing, textsIn(language)), words);
    }

    /// What a line does not hold stands in the other line of its row, at a place where words end.
    void printed()
    {
        const Texts texts = textsIn();
        const JournalRow saved = {1, {}, JournalKind::BandsSaved, {}, {}};
        const JournalRow searched = {
            2, {}, JournalKind::Searched, u"25/10/2026 - 26/10/2026, 00:00:00 - 23:59:59"_s, u"123"_s};
        JournalReport report(
            texts, {2, [&](qsizetype row) { return JournalReport::fields(row == 0 ? saved : searched, texts); }},
            u"note"_s);
        RecordedPage page;
        QVERIFY(report.step(page, QDeadlineTimer(QDeadlineTimer::Forever)).value());
        QStringList lines;
        for (const RecordedPage::Mark &mark : page.marks) {
            if (mark.points == 10)
                lines += QString::number(mark.y) + mark.text.mid(20).trimmed();
        }
        QCOMPARE(lines, (QStringList{u"2056Weekly programming saved"_s,
                                     u"2276Events searched: 25/10/2026 - 26/10/2026, 00:00:00 - 23:59:59;"_s,
                                     u"2496found: 123"_s, u"2936"_s}));
    }
};

QTEST_GUILESS_MAIN(TestJournalWords)
#include "tst_journalwords.moc"
