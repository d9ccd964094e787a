#include "texts/NameKey.h"

namespace {

/// Letters that are no base letter with an accent, but stand among the others all the same.
QStringView lettersFor(QChar letter)
{
    switch (letter.unicode()) {
    case u'æ':
        return u"ae";
    case u'œ':
        return u"oe";
    case u'ß':
        return u"ss";
    case u'ø':
        return u"o";
    case u'ð':
    case u'đ':
        return u"d";
    case u'þ':
        return u"th";
    case u'ł':
        return u"l";
    default:
        return {};
    }
}

} // namespace

QString nameKey(QStringView name)
{
    QString key;
    key.reserve(name.size());
    const auto append = [&key](QChar letter) {
        const QStringView plain = lettersFor(letter);
        if (!plain.isEmpty())
            key.append(plain);
        else if (!letter.isMark())
            key.append(letter);
    };
    for (const QChar written : name) {
        const QChar letter = written.toLower();
        if (letter.unicode() < 0x80 || letter.decompositionTag() == QChar::NoDecomposition) {
            append(letter);
        } else {
            // Some letters come apart in two steps: first one accent, then the other.
            const QString parts = QString(letter).normalized(QString::NormalizationForm_KD);
            for (const QChar part : parts)
                append(part.toLower());
        }
    }
    return key;
}
