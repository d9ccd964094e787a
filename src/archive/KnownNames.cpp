#include "archive/KnownNames.h"

namespace tool {

const KnownNames::Names &KnownNames::of(QByteArrayView code, QByteArrayView type)
{
    quint64 hash = 0xcbf29ce484222325;
    for (const QByteArrayView part : {type, code}) {
        for (const char byte : part)
            hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
    }
    Names &names = m_names[(hash >> 32) % slots];
    if (names.isThere && names.code == code && names.type == type)
        return names;
    const User *user = m_users.find(QString::fromUtf8(code), typeOf(QString::fromUtf8(type)));
    names = {code.toByteArray(), type.toByteArray(), user ? user->Cognome.toUtf8() : QByteArray(),
             user ? user->Nome.toUtf8() : QByteArray(), true};
    return names;
}

} // namespace tool
