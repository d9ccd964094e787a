#include "reports/TextReport.h"

Result<bool> TextReport::step(Page &page, const QDeadlineTimer &until)
{
    page.setFont(10, false);
    const double height = page.textHeight();
    const auto room = qMax<qsizetype>(1, static_cast<qsizetype>(page.width() / page.textWidth(QStringLiteral(" "))));
    while (m_next < m_lines.size()) {
        if (m_y + height > page.height()) {
            if (!page.newPage())
                return Fault{FaultCode::InputOutput, {}};
            m_y = 0;
        }
        const QString &text = m_lines[m_next];
        page.text(0, m_y, text.mid(m_printed, room));
        m_y += height;
        m_printed += room;
        if (m_printed >= text.size()) {
            m_printed = 0;
            ++m_next;
        }
        if (until.hasExpired() && m_next < m_lines.size())
            return false;
    }
    return true;
}
