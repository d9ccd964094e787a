#pragma once

#include <QProxyStyle>

/// The desktop's style, with room around the captions of buttons and no pictures beside them in message boxes.
class DesktopStyle : public QProxyStyle
{
    Q_OBJECT

public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                           const QWidget *widget) const override;
};
