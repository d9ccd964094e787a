#pragma once

#include "journal/Coverage.h"
#include "texts/Texts.h"

/// "3 h 12 min"; "45 s", "4 min 30 s", "5 min" and, from two days on, "3 days 4 h". What is smaller is cut off.
QString durationWords(qint64 seconds, const Texts &texts);

/// One line: that the program listened throughout, or how often and how long it did not, and how often and how long
/// nobody knows.
QString coverageWords(const Missing &missing, const Texts &texts);

/// Why the program did not listen, or that it did, as it goes on behind a colon.
QString listeningWords(Listening state, const Texts &texts);

/// "08:00:00 - 08:09:59: serial port lost": the first and the last second of a span, in local time of one day.
QString spanWords(const CoveredSpan &span, const Texts &texts);
