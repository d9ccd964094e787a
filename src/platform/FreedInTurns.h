#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

#include <algorithm>
#include <utility>

/// A list whose memory goes back in turns of the event loop once nobody has its values any more: to free the some
/// hundred thousand pieces of a large register takes longer than anything may wait. Without an event loop, and with few
/// values, it goes at once.
///
/// @tparam List  QList or std::vector of values that are not trivial
template<class List>
class FreedInTurns : public List
{
public:
    FreedInTurns() = default;
    FreedInTurns(List values) : List(std::move(values)) {}
    FreedInTurns(const FreedInTurns &) = default;
    FreedInTurns(FreedInTurns &&) noexcept = default;
    FreedInTurns &operator=(FreedInTurns other) noexcept
    {
        List::swap(other);
        return *this;
    }
    ~FreedInTurns()
    {
        if (!isLast() || this->size() <= atOnce || !QCoreApplication::instance())
            return;
        List rest;
        rest.swap(*this);
        new (std::nothrow) Rest(std::move(rest));
    }

private:
    static constexpr decltype(std::declval<List>().size()) atOnce = 1000;
    static constexpr decltype(atOnce) piece = 200;

    /// The values that nobody has any more; goes with the last of them.
    class Rest : public QTimer
    {
    public:
        explicit Rest(List values) : QTimer(QCoreApplication::instance()), m_values(std::move(values))
        {
            callOnTimeout(this, [this] { turn(); });
            start(0);
        }

    private:
        void turn()
        {
            constexpr int turnMilliseconds = 3; // several may go at once
            const QDeadlineTimer until(turnMilliseconds);
            while (!m_values.empty() && !until.hasExpired()) {
                const auto count = static_cast<std::ptrdiff_t>(std::min(m_values.size(), piece));
                m_values.erase(m_values.end() - count, m_values.end());
            }
            if (m_values.empty())
                delete this;
        }

        List m_values;
    };

    bool isLast() const
    {
        if constexpr (requires { this->isDetached(); })
            return this->isDetached();
        else
            return true;
    }
};
