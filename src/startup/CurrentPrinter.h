#pragma once

#include "startup/Settings.h"

/// The printer that this program prints on: the one of the setting PRN, an index in the print system's list.
class CurrentPrinter
{
public:
    /// Both must outlive this object.
    CurrentPrinter(Settings &settings, const Printers &printers) : m_settings(settings), m_printers(printers) {}

    const Printers &printers() const { return m_printers; }

    /// Its device name. @return NotOpen when none was chosen or none is installed, NotFound with its number, counted
    /// from 1, when the list has become too short
    Result<QString> name() const;
    /// Index in @p installed of the printer to be shown as the current one: the print system's default while none is
    /// chosen or the chosen one is gone, -1 when there is none at all.
    int shownIndex(const QStringList &installed) const;

    /// Makes a printer the current one, now and in the settings file; now also when the file cannot be written.
    Result<void> choose(int index);

private:
    Settings &m_settings;
    const Printers &m_printers;
};
