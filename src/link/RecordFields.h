#pragma once

#include "link/EventRecord.h"
#include "texts/Texts.h"

/// A record in words.
struct RecordFields {
    QString Codice;
    QString Canale; ///< with its state, as in "A - ENABLED"
    QString Tipo;
};

RecordFields recordFields(const EventRecord &record, const Texts &texts);
