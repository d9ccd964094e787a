#pragma once

#include <array>
#include <cstddef>

/// Entries of the menu, in its order.
enum class Entry {
    ImpPrn,
    Backup,
    Exit,
    Utenti,
    FascieOr,
    ProgFerie,
    RestoreUsers,
    ExportUsers,
    ImportUsers,
    Eventi,
    EventiOdierni,
    PrnLastEv,
    NumEvOdVis,
    Journal,
    ImpCom,
    LetConfInt,
    Utility,
    ImpContKor,
    Lingua,
    AttPass,
    AttPassUte,
    AttPassUty,
    IstrKOR,
    Istr752,
    IstrSwKOR,
    About,
};
inline constexpr int EntryCount = static_cast<int>(Entry::About) + 1;

enum class TopMenu { File, Anagrafica, Consult, Strumenti, Help };
inline constexpr int TopMenuCount = 5;

/// Top-level menu that an entry stands in.
TopMenu menuOf(Entry entry);

/// All that decides which menus and entries can be chosen.
struct MenuInput {
    bool gateIsClosed = false;         ///< from the start until the main password, if one is set, has been given
    bool portIsMissing = false;        ///< none has been chosen yet
    bool passwordWindowIsOpen = false; ///< any window that asks or sets a password
    bool usersAreAsked = false;        ///< the users password is being asked to open the register
    bool diagnosticsAreAsked = false;  ///< the diagnostics password is being asked
    bool registerIsOpen = false;       ///< the users register is open
};

struct MenuState {
    std::array<bool, TopMenuCount> menus{};
    std::array<bool, EntryCount> entries{};

    bool operator[](TopMenu menu) const { return menus[static_cast<std::size_t>(menu)]; }
    bool operator[](Entry entry) const { return entries[static_cast<std::size_t>(entry)]; }
};

/// What can be chosen now. An entry is disabled by itself whenever its menu is, because keys and screen readers reach
/// entries below a disabled menu.
MenuState menuState(const MenuInput &input);
