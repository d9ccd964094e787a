#include "startup/CurrentPrinter.h"

Result<QString> CurrentPrinter::name() const
{
    const int index = m_settings.IndStampante;
    const QStringList installed = index < 0 ? QStringList() : m_printers.names();
    if (installed.isEmpty())
        return Fault{FaultCode::NotOpen, {}};
    if (index >= installed.size())
        return Fault{FaultCode::NotFound, QString::number(index + 1)};
    return installed[index];
}

int CurrentPrinter::shownIndex(const QStringList &installed) const
{
    const int index = m_settings.IndStampante;
    if (index < -1)
        return -1;
    return index >= 0 && index < installed.size() ? index : m_printers.defaultIndex();
}

Result<void> CurrentPrinter::choose(int index)
{
    m_settings.IndStampante = index;
    return m_settings.save(QStringLiteral("PRN"), index);
}
