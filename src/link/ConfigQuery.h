#pragma once

#include "link/InterfaceConfig.h"

#include <QByteArray>

#include <optional>
#include <utility>

/// The question "&IC" and the interface's three-line answer, as a state machine fed with characters and monotonic time.
///
/// The answer shares the line with records. A line that has the form of a record is set aside at whatever place it
/// comes, and the answer is read as if it had not; it is handed back at once, so that it need not wait for its place on
/// disk until the answer is complete. A query that was repeated may be answered more than once: late answers are
/// swallowed for a while after the result, so that they do not spoil the record behind them.
///
/// The owner's part: when wantsToSend(), drop() what the port still holds, send Request and call sent(); feed() what
/// comes while takesInput(); tick() at the deadline(); then collect takeResult() and takeHandedBack().
class ConfigQuery
{
public:
    static constexpr const char *Request = "&IC";

    /// Begins to ask. @param unfinished  characters that came since the last line end and belong to no line yet
    void start(const QByteArray &unfinished);
    bool isRunning() const { return m_stage == Stage::Drop || isReading(); }
    bool takesInput() const { return m_stage != Stage::Idle; }
    bool wantsToSend() const { return m_stage == Stage::Drop; }

    /// A character that came before the question was sent.
    void drop(char character);
    void sent(qint64 now);
    void feed(char character, qint64 now);
    void tick(qint64 now);
    /// Ends a running query without an answer: the port has gone.
    void abort();
    /// When tick() is due, in the time of feed(); meaningful while takesInput() and not wantsToSend().
    qint64 deadline() const { return m_deadline; }

    /// The answer, once, when the query has ended.
    std::optional<InterfaceConfig> takeResult() { return std::exchange(m_result, std::nullopt); }
    /// Characters for the decoder, once: whole records, and when nothing is expected any more the line that has begun.
    QByteArray takeHandedBack();

private:
    enum class Stage { Idle, Drop, Banner, Line2, Line3, Linger };

    bool isReading() const { return m_stage == Stage::Banner || m_stage == Stage::Line2 || m_stage == Stage::Line3; }
    void append(char character);
    bool endLine();
    bool setRecordAside();
    void lineRead(qint64 now);
    void nextAttempt(qint64 now);
    void finish(const InterfaceConfig &config, qint64 now);
    bool swallow(const QByteArray &line);

    Stage m_stage = Stage::Idle;
    int m_attempts = 0;       ///< questions sent in this query
    int m_unanswered = 0;     ///< questions sent whose banner has not come
    int m_linesToSwallow = 0; ///< of a late answer whose banner has come
    qint64 m_deadline = 0;
    QByteArray m_before; ///< begun before the present line: only a record can go on from it
    QByteArray m_line;
    QByteArray m_line2;
    QByteArray m_records;
    bool m_afterCr = false;
    std::optional<InterfaceConfig> m_result;
};
