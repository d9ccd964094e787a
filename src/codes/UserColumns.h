#pragma once

#include "codes/User.h"
#include "startup/PlainText.h"
#include "texts/Text.h"

#include <array>

/// A field of a user, as a text.
struct UserField {
    QString User::*member = nullptr; ///< null = the type

    QString text(const User &user) const { return member ? user.*member : typeText(user.Tipo); }
    void set(User &user, const QString &text) const
    {
        if (member)
            user.*member = text;
        else
            user.Tipo = typeOf(text);
    }
};

/// A column of the users, wherever they are listed: in the grid of the register and in its print.
struct UserColumn {
    const char *field; ///< in the archive
    UserField value;
    Text caption;
    const char *widest;   ///< in the grid no value is wider
    int characters;       ///< in print
    Fit fit;              ///< in print
    int gap = 1;          ///< blanks in front of it, in print
    bool isTyped = false; ///< by the operator, into the grid
};

/// In the order in which they are shown.
inline constexpr std::array userColumns = {
    UserColumn{"Codice", {&User::Codice}, Text::CodiceColonna, "000000000", 10, Fit::Right, 0},
    UserColumn{"Tipo", {}, Text::Tipo, "DKS", 5, Fit::Centred, 2},
    UserColumn{"Cognome", {&User::Cognome}, Text::CognomeUtente, "nnnnnnnnnnnnnnn", 15, Fit::Left, 1, true},
    UserColumn{"Nome", {&User::Nome}, Text::NomeUtente, "nnnnnnnnnnnnnnn", 15, Fit::Left, 1, true},
    UserColumn{"Note", {&User::Note}, Text::InformazioniAggiuntive, "nnnnnnnnnnnnnnn", 15, Fit::Left, 1, true},
    UserColumn{"CodTronc", {&User::CodTronc}, Text::CodiceTroncatoColonna, "00000000", 9, Fit::Right},
};

/// Place in userColumns of one of a user's texts.
constexpr size_t userColumnOf(QString User::*text)
{
    size_t column = 0;
    while (userColumns.at(column).value.member != text)
        ++column;
    return column;
}
