#pragma once

#include <QByteArrayView>

namespace simulator {

/// Finds the queries in what the PC sends, however they are cut into pieces.
class QueryDetector
{
public:
    /// @return how many queries are complete with these bytes
    int feed(QByteArrayView bytes)
    {
        static constexpr QByteArrayView query = "&IC";
        int found = 0;
        for (const char byte : bytes) {
            if (byte == query[m_matched])
                ++m_matched;
            else
                m_matched = byte == query[0] ? 1 : 0;
            if (m_matched == query.size()) {
                ++found;
                m_matched = 0;
            }
        }
        return found;
    }

    void reset() { m_matched = 0; }

private:
    qsizetype m_matched = 0;
};

} // namespace simulator
