#include "link/LinkState.h"

#include "texts/OwnText.h"

LinkState::Light LinkState::light() const
{
    switch (known) {
    case Known::Nothing:
        return Light::Grey;
    case Known::Answers:
        return Light::Green;
    case Known::Silent:
    case Known::NoPort:
        break;
    }
    return Light::Red;
}

std::optional<Text> LinkState::panel() const
{
    switch (known) {
    case Known::Nothing:
        return {};
    case Known::Answers:
        return Text::InterfacciaInLinea;
    case Known::NoPort:
        return Text::PortaSerialeNonDisponibile;
    case Known::Silent:
        break;
    }
    return Text::InterfacciaNonInLinea;
}

std::variant<Text, OwnText> LinkState::words() const
{
    if (const std::optional<Text> text = panel())
        return *text;
    return OwnText::LedUnknown;
}

QList<Message> portMessages(int port, const Fault &fault)
{
    // The sentence that operators know speaks of a port in use; of any other cause it would be untrue.
    if (fault.code == FaultCode::AlreadyInUse)
        return {{Text::PortaSerialeGiaAperta, {}, {}}};
    return {{OwnText::PortNotOpened, {QString::number(port)}, fault}, {OwnText::PortTriedAgain, {}, {}}};
}
