#include "link/ConfigQuery.h"

#include "link/EventRecord.h"

namespace {

constexpr int attempts = 3;
constexpr qint64 attemptMilliseconds = 1000;
/// An interface that is still starting answers late; past this it is not heard as an answer.
constexpr qint64 lingerMilliseconds = 2000;
/// Far more than any line of the interface; noise without an end must not grow the program.
constexpr qsizetype lineLimit = 512;

/// True for the beginning of a record: the little that can be told before it is complete.
bool mayBecomeRecord(const QByteArray &text)
{
    return text.size() <= RecordLength && (text.size() < 2 || text[1] == '/') && (text.size() < 4 || text[3] == '-');
}

} // namespace

void ConfigQuery::start(const QByteArray &unfinished)
{
    // What is still here has not been handed back: the line that has begun goes on.
    m_before += m_line + unfinished;
    m_line.clear();
    if (m_stage != Stage::Linger) {
        m_unanswered = 0;
        m_linesToSwallow = 0;
        m_afterCr = m_before.endsWith('\r');
        if (m_afterCr) {
            m_before.chop(1);
            setRecordAside();
            m_before.clear();
        }
    }
    m_attempts = 0;
    m_result.reset();
    m_stage = Stage::Drop;
}

void ConfigQuery::append(char character)
{
    if (m_line.size() < lineLimit)
        m_line.append(character);
    else if (character == '\n')
        m_line.clear();
}

/// Ends the present line. @return true when it was a record
bool ConfigQuery::setRecordAside()
{
    const QByteArray whole = m_before + m_line;
    const QByteArray candidate = whole.sliced(whole.lastIndexOf('\n') + 1);
    if (!decodeRecord(candidate + '\r'))
        return false;
    m_records += candidate + "\r\n";
    m_before.clear();
    m_line.chop(qMin(candidate.size(), m_line.size()));
    return true;
}

bool ConfigQuery::endLine()
{
    m_afterCr = true;
    return setRecordAside();
}

void ConfigQuery::drop(char character)
{
    if (character == '\n' && m_afterCr) {
        m_afterCr = false;
    } else if (character == '\r') {
        if (!endLine()) {
            swallow(m_line);
            m_before.clear();
            m_line.clear();
        }
    } else {
        m_afterCr = false;
        append(character);
    }
}

void ConfigQuery::sent(qint64 now)
{
    m_before += m_line;
    m_line.clear();
    if (m_before.size() > lineLimit)
        m_before = m_before.sliced(m_before.lastIndexOf('\n') + 1).right(lineLimit);
    ++m_attempts;
    ++m_unanswered;
    m_stage = Stage::Banner;
    m_deadline = now + attemptMilliseconds;
}

void ConfigQuery::feed(char character, qint64 now)
{
    if (m_stage == Stage::Drop) {
        drop(character);
        return;
    }
    if (character == '\n' && m_afterCr) {
        m_afterCr = false;
        return;
    }
    m_afterCr = false;
    if (character != '\r') {
        append(character);
        return;
    }
    if (!endLine())
        lineRead(now);
}

void ConfigQuery::lineRead(qint64 now)
{
    const QByteArray begun = std::exchange(m_before, {});
    const QByteArray line = std::exchange(m_line, {});
    switch (m_stage) {
    case Stage::Banner:
        if (swallow(line))
            break;
        // A banner cut in two by the end of an attempt is whole with what came before.
        if (line == interfaceBanner() || begun + line == interfaceBanner()) {
            --m_unanswered;
            m_stage = Stage::Line2;
        } else {
            nextAttempt(now);
        }
        break;
    case Stage::Line2:
        m_line2 = line;
        m_stage = Stage::Line3;
        break;
    case Stage::Line3:
        finish(parseReply(m_line2, line), now);
        break;
    default:
        if (!swallow(line))
            m_records += begun + line + "\r\n";
        else if (m_unanswered == 0)
            m_stage = Stage::Idle;
    }
}

void ConfigQuery::nextAttempt(qint64 now)
{
    if (m_attempts < attempts)
        m_stage = Stage::Drop;
    else
        finish({}, now);
}

void ConfigQuery::finish(const InterfaceConfig &config, qint64 now)
{
    m_result = config;
    m_stage = m_unanswered > 0 ? Stage::Linger : Stage::Idle;
    m_deadline = now + lingerMilliseconds;
}

/// True for a line of an answer that nobody waits for any more.
bool ConfigQuery::swallow(const QByteArray &line)
{
    if (m_linesToSwallow > 0) {
        if (--m_linesToSwallow == 0 && m_unanswered > 0)
            --m_unanswered;
        return true;
    }
    if (line != interfaceBanner() || m_stage == Stage::Banner)
        return false;
    m_linesToSwallow = 2;
    return true;
}

void ConfigQuery::tick(qint64 now)
{
    if (now < m_deadline)
        return;
    switch (m_stage) {
    case Stage::Banner:
        nextAttempt(now);
        break;
    case Stage::Line2:
    case Stage::Line3: {
        // What has come of the line counts as the line, unless it is a record on its way.
        const QByteArray line = mayBecomeRecord(m_line) ? QByteArray() : std::exchange(m_line, {});
        if (m_stage == Stage::Line2)
            finish(parseReply(line, {}), now);
        else
            finish(parseReply(m_line2, line), now);
        break;
    }
    case Stage::Linger:
        m_stage = Stage::Idle;
        break;
    default:
        break;
    }
}

void ConfigQuery::abort()
{
    if (isRunning())
        m_result = InterfaceConfig();
    m_stage = Stage::Idle;
}

QByteArray ConfigQuery::takeHandedBack()
{
    QByteArray characters = std::exchange(m_records, {});
    if (m_stage == Stage::Idle) {
        characters += m_before + m_line;
        m_before.clear();
        m_line.clear();
    }
    return characters;
}
