#pragma once

#include "ManualPages.h"

/// Puts into a printed manual what the toolkit's writer leaves out: an outline of its headings, which viewers show
/// beside the pages, links that lead to them, and the language.
///
/// @param language  as in "it"; "" for a manual in several
/// @return the PDF
/// @throw std::exception  it cannot be read, or has not all the links
QByteArray withContents(const PrintedManual &manual, const QByteArray &language);
