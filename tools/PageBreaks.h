#pragma once

#include <QRectF>
#include <QTextBlock>
#include <QTextDocument>

// Where things stand in a document that is laid out in pages, which follow each other without a gap.

/// The headings in their order.
QList<QTextBlock> headingBlocks(const QTextDocument &document);
/// The first line of a block; an empty one without a size where there is none.
QRectF firstLine(const QTextBlock &block);
/// Page at the height @p y of the document, from 0.
int pageAt(const QTextDocument &document, double y);

/// Breaks pages where the layout, which knows nothing of lines that belong together, would leave a heading alone at the
/// end of one, or tear a row of a table. A table that goes on on the next page has its head there again.
void keepTogether(QTextDocument &document, double dotsPerInch);
