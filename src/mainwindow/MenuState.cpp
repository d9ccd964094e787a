#include "mainwindow/MenuState.h"

namespace {

bool isFree(Entry entry, const MenuInput &input)
{
    switch (entry) {
    case Entry::Utenti:
    case Entry::ExportUsers:
    case Entry::ImportUsers:
        return !input.usersAreAsked;
    case Entry::RestoreUsers:
        // What is being changed there must not be lost.
        return !input.usersAreAsked && !input.registerIsOpen;
    case Entry::Utility:
        return !input.diagnosticsAreAsked;
    case Entry::AttPass:
    case Entry::AttPassUte:
    case Entry::AttPassUty:
        return !input.registerIsOpen;
    default:
        return true;
    }
}

} // namespace

TopMenu menuOf(Entry entry)
{
    if (entry <= Entry::Exit)
        return TopMenu::File;
    if (entry <= Entry::ImportUsers)
        return TopMenu::Anagrafica;
    if (entry <= Entry::Journal)
        return TopMenu::Consult;
    return entry <= Entry::AttPassUty ? TopMenu::Strumenti : TopMenu::Help;
}

MenuState menuState(const MenuInput &input)
{
    MenuState state;
    state.menus.fill(!input.gateIsClosed && !input.portIsMissing);
    if (input.passwordWindowIsOpen)
        state.menus[static_cast<std::size_t>(TopMenu::Anagrafica)] = false;
    for (int i = 0; i < EntryCount; ++i) {
        const auto entry = static_cast<Entry>(i);
        state.entries[static_cast<std::size_t>(i)] = state[menuOf(entry)] && isFree(entry, input);
    }
    return state;
}
