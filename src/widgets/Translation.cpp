#include "widgets/Translation.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

#include <array>

Translation::~Translation()
{
    QCoreApplication::removeTranslator(&m_translator);
}

void Translation::apply(int language)
{
    static const std::array languages = {QLocale(QLocale::Italian), QLocale(QLocale::English), QLocale(QLocale::French),
                                         QLocale(QLocale::German)};
    const QLocale &locale = languages.at(static_cast<size_t>(language - 1));
    QLocale::setDefault(locale);
    QCoreApplication::removeTranslator(&m_translator);
    if (m_translator.load(locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                          QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_translator);
}
