#pragma once

#include "platform/FreedInTurns.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <utility>
#include <vector>

/// Sorts values in turns, however many they are: short runs first, which are then merged piece by piece. What compares
/// as equal stays in the order in which it was added.
template<class T, class Less>
class SortInTurns
{
public:
    explicit SortInTurns(Less less) : m_less(std::move(less)) {}

    /// Only before the first step.
    void add(T value) { m_values.push_back(std::move(value)); }
    std::size_t count() const { return m_values.size(); }

    /// @return true when all are sorted
    bool step(const QDeadlineTimer &until)
    {
        bool isSorted = false;
        do {
            isSorted = m_sorted < m_values.size() ? sortRun() : merge();
        } while (!isSorted && !until.hasExpired());
        return isSorted;
    }

    /// The values, in their order; afterwards there are none.
    std::vector<T> take()
    {
        std::vector<T> sorted;
        sorted.swap(m_values);
        return sorted;
    }

private:
    static constexpr std::size_t runLength = 512;
    static constexpr int piece = 64;

    bool sortRun()
    {
        const auto first = m_values.begin() + static_cast<std::ptrdiff_t>(m_sorted);
        m_sorted = std::min(m_sorted + runLength, m_values.size());
        std::stable_sort(first, m_values.begin() + static_cast<std::ptrdiff_t>(m_sorted), m_less);
        if (m_sorted == m_values.size())
            beginPair(0);
        return m_values.size() <= runLength;
    }

    void beginPair(std::size_t first)
    {
        m_left = first;
        m_leftEnd = std::min(first + m_width, m_values.size());
        m_right = m_leftEnd;
        m_rightEnd = std::min(m_leftEnd + m_width, m_values.size());
    }

    /// Merges on, from two neighbours of m_width values each.
    bool merge()
    {
        if (m_width >= m_values.size())
            return true;
        for (int i = 0; i < piece; ++i) {
            if (m_left == m_leftEnd && m_right == m_rightEnd) {
                if (m_rightEnd == m_values.size()) {
                    m_values.swap(m_merged);
                    m_merged.clear();
                    m_width *= 2;
                    beginPair(0);
                    return m_width >= m_values.size();
                }
                beginPair(m_rightEnd);
            }
            const bool isRight =
                m_left == m_leftEnd || (m_right != m_rightEnd && m_less(m_values[m_right], m_values[m_left]));
            m_merged.push_back(std::move(m_values[isRight ? m_right++ : m_left++]));
        }
        return false;
    }

    Less m_less;
    FreedInTurns<std::vector<T>> m_values;
    FreedInTurns<std::vector<T>> m_merged;
    std::size_t m_sorted = 0; ///< values that stand in a run
    std::size_t m_width = runLength;
    std::size_t m_left = 0;
    std::size_t m_leftEnd = 0;
    std::size_t m_right = 0;
    std::size_t m_rightEnd = 0;
};
