#include "prefs/PasswordFault.h"

#include "archives/Tables.h"
#include "texts/OwnText.h"

Message passwordMessage(Passwords::Fault fault, const Fault &reason)
{
    switch (fault) {
    case Passwords::Fault::Unreadable:
        return {OwnText::UsersUnreadable, {QStringView(ArchiveName::Users).toString()}, reason};
    case Passwords::Fault::Corrupt:
        return {Text::FilePasswordCorrotto, {}, {}};
    case Passwords::Fault::RegisterUnusable:
    case Passwords::Fault::None:
        break;
    }
    return {Text::FileMancanteODanneggiato, {}, {}};
}
