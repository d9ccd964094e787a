#pragma once

#include "prefs/Passwords.h"
#include "texts/Texts.h"

/// What is told the operator when passwords cannot be read or stored.
///
/// @param fault   any but None
/// @param reason  the passwords' reason(), used when @p fault is Unreadable
Message passwordMessage(Passwords::Fault fault, const Fault &reason);
