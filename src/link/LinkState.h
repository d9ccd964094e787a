#pragma once

#include "texts/Texts.h"

#include <QList>

#include <optional>
#include <variant>

/// What is known of the link, and how it looks. Light, words and flashing all come from here, so that they always
/// agree; a window shows them and adds nothing.
struct LinkState {
    enum class Known {
        Nothing, ///< not asked yet, being asked, or the port is lent to the port window
        Answers,
        Silent,
        NoPort, ///< the chosen port is not open
    };
    enum class Light { Grey, Green, Red };

    Known known = Known::Nothing;
    bool alarm = false; ///< raised, and the operator has not closed its message yet

    Light light() const;
    /// The state in words; none while nothing is known.
    std::optional<Text> panel() const;
    /// What the light says, for whoever cannot see it.
    std::variant<Text, OwnText> words() const;
    bool flashes() const { return alarm; }
    /// Whether the operator may have the interface asked: not while he reads that it does not answer.
    bool mayBeAsked() const { return known != Known::Silent; }
};

/// What the operator is told of @p port when it cannot be opened, a sentence each. @param fault  of the opening
QList<Message> portMessages(int port, const Fault &fault);
