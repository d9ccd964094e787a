#pragma once

#include "timeprog/Strips.h"

#include <QWidget>

/// Picture of intervals, to be looked at beside their list: one row for each strip, what is marked in the list brought
/// out, the present moment as a line. Its sizes follow the font; patterns and outlines tell what colours tell.
class StripPicture : public QWidget
{
    Q_OBJECT

public:
    explicit StripPicture(const QString &name, QWidget *parent = nullptr);

    void show(Strips strips);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// A place of a strip was clicked. @param place  minute or day, within the part that the row has
    void clicked(qsizetype strip, int place);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    int captionWidth() const;
    int rowHeight() const;
    QRectF rowRect(qsizetype strip) const;
    QRectF spanRect(qsizetype strip, Strips::Span span) const;
    QSize sizeFor(double characters, double lines) const;

    Strips m_strips;
};
