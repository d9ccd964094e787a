#pragma once

/// The wait for a transmitter or keypad that the operator wants to have recognised: a tick every tenth of a second, 99
/// of them at most.
class RecognitionWait
{
public:
    enum class Tick { Received, Again, GivenUp };

    void start() { m_counter = 1; }
    /// @param received  a code has come since the start
    Tick tick(bool received)
    {
        if (received)
            return Tick::Received;
        return ++m_counter < limit ? Tick::Again : Tick::GivenUp;
    }

private:
    static constexpr int limit = 100;
    int m_counter = 1;
};
