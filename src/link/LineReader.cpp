#include "link/LineReader.h"

namespace {

/// A record has 17 characters before its LF: what is longer is none, however it goes on.
constexpr qsizetype recordLimit = 64;

} // namespace

LineReader::LineReader(SerialControl &serial, LinkMonitor &link, EventRoad &road, QObject *parent)
    : QObject(parent), m_serial(serial), m_link(link), m_road(road)
{
    m_line.reserve(recordLimit);
    m_link.unfinishedLine = [this] { return std::exchange(m_line, {}); };
    connect(&m_serial, &SerialControl::OnComm, this, &LineReader::ConZeb_OnComm);
    connect(&m_link, &LinkMonitor::handsBack, this, &LineReader::takeBack);
}

LineReader::~LineReader()
{
    m_link.unfinishedLine = nullptr;
}

void LineReader::ConZeb_OnComm()
{
    if (m_serial.commEvent() != SerialControl::Received)
        return;
    const QByteArrayView input = m_serial.input();
    if (input.isEmpty())
        return;
    const char character = input.front();
    if (m_link.takes(character))
        return;
    if (character != '\n') {
        take(character);
        return;
    }
    // No notification comes in the middle of a record, and none is lost: they wait in the control.
    m_serial.setRThreshold(0);
    take(character);
    m_serial.setRThreshold(1);
    m_serial.setSThreshold(1);
}

void LineReader::take(char character)
{
    if (character != '\n') {
        if (m_line.size() < recordLimit)
            m_line.append(character);
        return;
    }
    // Storing runs to its end without returning to the event loop, so that no timer can change the day in between.
    m_road.RegistraEvento(m_line);
    m_line.resize(0);
}

void LineReader::takeBack()
{
    for (const char character : m_link.takeHandedBack())
        take(character);
}
