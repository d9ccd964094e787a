#include "widgets/PainterPage.h"

#include <QPagedPaintDevice>
#include <QPainter>

namespace {

constexpr double twipsPerInch = 1440;
constexpr double pointsPerInch = 72;
constexpr double pitch = 0.6;           ///< width of a character, in em
constexpr double pitchTolerance = 0.01; ///< of the pitch
constexpr double ruleWidth = 10;        ///< in twips
constexpr QRgb lightGrey = qRgb(224, 224, 224);

} // namespace

QStringList PainterPage::faces()
{
    return {QStringLiteral("Courier New"), QStringLiteral("Liberation Mono")};
}

PainterPage::PainterPage(QPainter &painter, QPagedPaintDevice &device, const QStringList &faces)
    : m_painter(painter),
      m_device(device),
      m_faces(faces),
      m_dotsPerTwip(device.logicalDpiX() / twipsPerInch),
      m_metrics(painter.font(), &device)
{
    m_painter.setPen(QPen(Qt::black, dots(ruleWidth), Qt::SolidLine, Qt::FlatCap));
    setFont(10, false);
}

bool PainterPage::isFixedPitch()
{
    bool isFixed = true;
    for (const bool isBold : {false, true}) {
        for (const QChar character : {QLatin1Char('i'), QLatin1Char('W'), QLatin1Char(' ')}) {
            setFont(10, isBold);
            const double em = 10 * twipsPerInch / pointsPerInch;
            const double width = textWidth(QString(10, character)) / 10 / em;
            isFixed = isFixed && qAbs(width / pitch - 1) < pitchTolerance;
        }
    }
    return isFixed;
}

double PainterPage::width() const
{
    return twips(m_device.width());
}

double PainterPage::height() const
{
    return twips(m_device.height());
}

void PainterPage::setFont(int points, bool isBold)
{
    QFont font(m_faces, points);
    font.setStyleHint(QFont::TypeWriter);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setBold(isBold);
    m_painter.setFont(font);
    m_metrics = QFontMetricsF(font, &m_device);
}

double PainterPage::textWidth(const QString &text) const
{
    return twips(m_metrics.horizontalAdvance(text));
}

double PainterPage::textHeight() const
{
    return twips(m_metrics.height());
}

void PainterPage::text(double x, double y, const QString &text)
{
    m_painter.drawText(QPointF(dots(x), dots(y) + m_metrics.ascent()), text);
}

void PainterPage::rule(double x1, double y1, double x2, double y2)
{
    m_painter.drawLine(QPointF(dots(x1), dots(y1)), QPointF(dots(x2), dots(y2)));
}

void PainterPage::band(double x, double y, double width, double height)
{
    m_painter.fillRect(QRectF(dots(x), dots(y), dots(width), dots(height)), QColor(lightGrey));
}

bool PainterPage::newPage()
{
    return m_device.newPage();
}
