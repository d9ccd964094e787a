#pragma once

#include "reports/Page.h"

#include <QList>

/// A page that notes what is drawn on it. A character is 12 twips wide a point, a line 22 twips high.
class RecordedPage : public Page
{
public:
    struct Mark {
        int page; ///< counted from 1
        double x, y;
        QString text;  ///< of a text; "|", "-" and "#" stand for vertical and horizontal rules and bands
        double x2 = 0; ///< end of a rule or band, as is the next
        double y2 = 0;
        int points = 0; ///< of a text; negative when it is bold
        bool operator==(const Mark &) const = default;
        QString asText() const
        {
            QString all = QStringLiteral("page %1 '%2' at").arg(page).arg(text);
            for (const double part : {x, y, x2, y2, double(points)})
                all += QLatin1Char(' ') + QString::number(part);
            return all;
        }
    };
    QList<Mark> marks;
    int pages = 1;
    int lastPage = 1000; ///< the device takes no more

    double width() const override { return 10920; }
    double height() const override { return 15000; }
    void setFont(int points, bool isBold) override
    {
        m_points = points;
        m_isBold = isBold;
    }
    double textWidth(const QString &text) const override { return 12.0 * m_points * double(text.size()); }
    double textHeight() const override { return 22.0 * m_points; }
    void text(double x, double y, const QString &text) override
    {
        marks.append({pages, x, y, text, 0, 0, m_isBold ? -m_points : m_points});
    }
    void rule(double x1, double y1, double x2, double y2) override
    {
        marks.append({pages, x1, y1, QString(QLatin1Char(x1 == x2 ? '|' : '-')), x2, y2});
    }
    void band(double x, double y, double width, double height) override
    {
        // What was drawn before is not seen any more.
        marks.removeIf([&](const Mark &mark) {
            return mark.page == pages && mark.points != 0 && mark.y > y - 220 && mark.y < y + height;
        });
        marks.append({pages, x, y, QString(QLatin1Char('#')), x + width, y + height});
    }
    bool newPage() override { return ++pages <= lastPage; }

private:
    int m_points = 10;
    bool m_isBold = false;
};
