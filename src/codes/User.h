#pragma once

#include <QString>

/// A user as the register holds him; the names are those of the fields. The same code can be one user's as a
/// transmitter and another's as a keypad code.
struct User {
    QString Codice;
    QString Tipo; ///< "TX" or "DKS", see typeText(); an archive may hold anything
    QString Cognome;
    QString Nome;
    QString Note;
    QString CodTronc;
};
