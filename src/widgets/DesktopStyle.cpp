#include "widgets/DesktopStyle.h"

#include <QStyleOption>

int DesktopStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                            QStyleHintReturn *data) const
{
    // The program's own buttons have none.
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons)
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, data);
}

QSize DesktopStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                                     const QWidget *widget) const
{
    // Short captions stand in the width that all buttons have; a long one gets room of its own.
    if (type == CT_PushButton && option)
        return QProxyStyle::sizeFromContents(type, option, size + QSize(option->fontMetrics.height(), 0), widget);
    return QProxyStyle::sizeFromContents(type, option, size, widget);
}
