#include "platform/SystemLanguage.h"

#include <QLocale>

int systemLanguage()
{
    switch (QLocale::system().language()) {
    case QLocale::Italian:
        return 1;
    case QLocale::French:
        return 3;
    case QLocale::German:
        return 4;
    default:
        return 2;
    }
}
