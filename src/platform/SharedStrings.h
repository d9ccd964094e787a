#pragma once

#include "platform/BiffRecord.h"

#include <QHash>

/// The strings of a workbook, each kept once, in the form in which they lie in its file: a record and as many
/// continuations as they need. Grows as strings come, so that nothing is left to be done when the file is written.
class SharedStrings
{
public:
    static constexpr qsizetype MostCharacters = 32767; ///< that the cell of a reader can hold

    SharedStrings();

    /// Number of @p text (at most MostCharacters) in the table, from 0; a new one is added.
    quint32 add(const QString &text);
    /// The records.
    QByteArray bytes() const;

private:
    void append(QStringView text);
    void continueRecord();

    QHash<QString, quint32> m_numbers;
    quint32 m_uses = 0;
    QByteArray m_full; ///< records that take no more
    BiffRecord m_last;
};
