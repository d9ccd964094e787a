#include "codes/CodeRules.h"
#include "texts/OwnText.h"
#include "texts/Texts.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct Manual {
    int language;
    const char *name; ///< of the language
    const char *file;
};

constexpr std::array manuals = {
    Manual{1, "it", "/assets/manuals/mansw_it.md"},
    Manual{2, "en", "/docs/manual.md"},
    Manual{3, "fr", "/assets/manuals/mansw_fr.md"},
    Manual{4, "de", "/assets/manuals/mansw_de.md"},
};

QString contentOf(const Manual &manual)
{
    QFile file(QStringLiteral(KOR_SOURCE) + QLatin1String(manual.file));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no manual %s", manual.file);
    return QString::fromUtf8(file.readAll());
}

/// A text as a manual may quote it: access keys, line ends, capitals and what stands before a value do not matter.
QString plain(QString text)
{
    text = text.remove(u'&').simplified().toLower();
    while (text.endsWith(u':') || text.endsWith(u' '))
        text.chop(1);
    return text;
}

/// All that the program can show in a language.
QStringList shownTexts(int language)
{
    Texts texts;
    texts.fill(language);
    QStringList shown{typeText(CodeType::Transmitter), typeText(CodeType::Keypad)};
    for (int i = 0; i < int(TextCount); ++i)
        shown.append(texts[Text(i)]);
    for (int i = 0; i < int(OwnTextCount); ++i)
        shown.append(texts[OwnText(i)]);
    // What is joined of several, and the toolkit's own button.
    shown.append(texts[Text::IlCodice] + u" TX 1 "_s + texts[Text::NonPresenteInAnagrafica]);
    shown.append(u"Sì"_s);
    for (QString &text : shown)
        text = plain(text);
    return shown;
}

/// What stands between single stars.
QStringList quotedIn(QString manual)
{
    static const QRegularExpression code(u"`[^`]*`"_s), quoted(u"\\*([^*]+)\\*"_s);
    manual.remove(code).replace(u"***"_s, u"*"_s).remove(u"**"_s);
    QStringList found;
    for (const QRegularExpressionMatch &match : quoted.globalMatch(manual))
        found.append(match.captured(1));
    return found;
}

/// "..." and a single "n" stand for whatever the program puts there.
QRegularExpression patternOf(const QString &quoted)
{
    static const QRegularExpression value(u"\\s*:?\\s*\\.\\.\\.$|\\s*\\.\\.\\.\\s*|(?<=com)n\\b|\\bn\\b(?!')"_s);
    QStringList parts = plain(quoted).split(value);
    for (QString &part : parts)
        part = QRegularExpression::escape(part);
    return QRegularExpression(QRegularExpression::anchoredPattern(parts.join(u".*"_s)));
}

/// Headings by their levels, pictures by their names, and the rows of tables, in their order.
QString skeletonOf(const QString &manual)
{
    static const QRegularExpression part(u"^(#+) |^<!-- (picture: \\S+|contents) -->$|^(---[-|]*)$|^.* (\\|) .*$"_s,
                                         QRegularExpression::MultilineOption);
    QString skeleton;
    for (const QRegularExpressionMatch &match : part.globalMatch(manual))
        skeleton += match.captured(match.lastCapturedIndex()) + u'\n';
    return skeleton;
}

} // namespace

class TestManuals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void quotesExist_data()
    {
        QTest::addColumn<int>("number");
        for (int i = 0; i < int(manuals.size()); ++i)
            QTest::newRow(manuals.at(size_t(i)).name) << i;
    }
    void quotesExist()
    {
        QFETCH(int, number);
        const Manual &manual = manuals.at(size_t(number));
        const QStringList shown = shownTexts(manual.language), quoted = quotedIn(contentOf(manual));
        QVERIFY(quoted.size() > 150);
        QStringList unknown;
        for (const QString &words : quoted) {
            const QRegularExpression pattern = patternOf(words);
            if (std::none_of(shown.begin(), shown.end(),
                             [&](const QString &text) { return pattern.match(text).hasMatch(); }))
                unknown.append(words.simplified());
        }
        QCOMPARE(unknown.join(u'\n'), QString());
    }

    void sameInAllLanguages()
    {
        const QString english = skeletonOf(contentOf(manuals[1]));
        QVERIFY(english.contains(u"##"_s) && english.contains(u"picture"_s) && english.contains(u'|'));
        for (const Manual &manual : manuals)
            QCOMPARE(skeletonOf(contentOf(manual)), english);
    }
};

QTEST_GUILESS_MAIN(TestManuals)
#include "tst_manuals.moc"
