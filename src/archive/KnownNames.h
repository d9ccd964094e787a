#pragma once

#include "codes/UserDirectory.h"

#include <vector>

namespace tool {

/// The names of the users of events, ready to be written: most events are of somebody who was there before.
class KnownNames
{
public:
    struct Names {
        QByteArray code; ///< as stored, like the type
        QByteArray type;
        QByteArray surname; ///< UTF-8; "" when nobody is known
        QByteArray name;
        bool isThere = false;
    };

    /// @param users  must outlive this object
    explicit KnownNames(const UserDirectory &users) : m_users(users), m_names(slots) {}

    /// Of an event with that code and type, as stored; until the next call.
    const Names &of(QByteArrayView code, QByteArrayView type);
    /// The users have been read anew.
    void clear() { m_names.assign(slots, {}); }

private:
    static constexpr size_t slots = 32768;

    const UserDirectory &m_users;
    std::vector<Names> m_names; ///< one for each value of a hash; who comes later takes the place
};

} // namespace tool
