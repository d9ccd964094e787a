#pragma once

#include "reports/Page.h"

#include <QFontMetricsF>
#include <QStringList>

class QPagedPaintDevice;
class QPainter;

/// A page painted on a document. Text is measured on that document and not hinted to any screen, so that columns stand
/// where they are reckoned.
class PainterPage final : public Page
{
public:
    /// The faces that are equally wide; the first that is installed is taken.
    static QStringList faces();

    /// @param painter  active on @p device; like it, must outlive this object
    PainterPage(QPainter &painter, QPagedPaintDevice &device, const QStringList &faces = PainterPage::faces());

    /// True when the face that was found is as wide as those asked for, 0.6 em for every character; a table in another
    /// one would be crooked, or not fit the paper.
    bool isFixedPitch();

    double width() const override;
    double height() const override;
    void setFont(int points, bool isBold) override;
    double textWidth(const QString &text) const override;
    double textHeight() const override;
    void text(double x, double y, const QString &text) override;
    void rule(double x1, double y1, double x2, double y2) override;
    void band(double x, double y, double width, double height) override;
    bool newPage() override;

private:
    double dots(double twips) const { return twips * m_dotsPerTwip; }
    double twips(double dots) const { return dots / m_dotsPerTwip; }

    QPainter &m_painter;
    QPagedPaintDevice &m_device;
    const QStringList m_faces;
    double m_dotsPerTwip;
    QFontMetricsF m_metrics;
};
