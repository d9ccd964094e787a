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
    /// Places that one may have: two who had the same would else drive each other out all the time.
    static constexpr size_t ways = 4;

    Names look(QByteArrayView code, QByteArrayView type) const;

    const UserDirectory &m_users;
    std::vector<Names> m_names; ///< by a hash; who finds no place free takes the first of his
};

} // namespace tool
