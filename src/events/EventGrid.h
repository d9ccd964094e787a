#pragma once

#include "events/EventColumns.h"
#include "texts/Texts.h"
#include "widgets/RowsModel.h"
#include "widgets/SpokenMark.h"

/// The columns of events as a grid has them.
inline QList<RowsModel::Column> gridColumns(std::span<const EventColumn> columns, const Texts &texts)
{
    QList<RowsModel::Column> all;
    for (const EventColumn &column : columns) {
        const Qt::AlignmentFlag side = column.fit == Fit::Left    ? Qt::AlignLeft
                                       : column.fit == Fit::Right ? Qt::AlignRight
                                                                  : Qt::AlignHCenter;
        all.append({texts[column.caption], column.twips, side | Qt::AlignVCenter, QString::fromLatin1(column.widest),
                    column.kind == EventColumn::Kind::Name});
        if (column.kind == EventColumn::Kind::Mark)
            all.last().spokenAs = spokenMark(texts);
    }
    return all;
}
