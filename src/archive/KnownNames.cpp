#include "archive/KnownNames.h"

namespace tool {

const KnownNames::Names &KnownNames::of(QByteArrayView code, QByteArrayView type)
{
    const size_t home = qHash(code, qHash(type)) % slots;
    for (size_t way = 0; way < ways; ++way) {
        Names &names = m_names[(home + way) % slots];
        if (!names.isThere)
            return names = look(code, type);
        if (names.code == code && names.type == type)
            return names;
    }
    return m_names[home] = look(code, type);
}

KnownNames::Names KnownNames::look(QByteArrayView code, QByteArrayView type) const
{
    const User *user = m_users.find(QString::fromUtf8(code), typeOf(QString::fromUtf8(type)));
    return {code.toByteArray(), type.toByteArray(), user ? user->Cognome.toUtf8() : QByteArray(),
            user ? user->Nome.toUtf8() : QByteArray(), true};
}

} // namespace tool
