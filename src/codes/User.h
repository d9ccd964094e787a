#pragma once

#include "codes/CodeRules.h"

/// A user as the register holds him; the names are those of the fields. The same code can be one user's as a
/// transmitter and another's as a keypad code.
struct User {
    QString Codice;
    std::optional<CodeType> Tipo; ///< none where the archive holds another text
    QString Cognome;
    QString Nome;
    QString Note;
    QString CodTronc;
};
