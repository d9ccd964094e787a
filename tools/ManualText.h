#pragma once

#include <QStringList>

/// Name by which a text refers to a heading, as repository pages make it: small letters and digits, "-" for blanks.
QString anchor(const QString &heading);

/// The Markdown of a manual's source as it is printed: with its table of contents in the place of "<!-- contents -->",
/// and a picture for each "<!-- picture: NAME -->", which no page of the repository shows; without links that lead out.
QString manualText(QString source);

/// Names of its pictures.
QStringList picturesIn(const QString &source);
