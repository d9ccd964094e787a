#pragma once

#include "link/EventRoad.h"
#include "link/LinkMonitor.h"

/// Takes the characters of the serial line one by one and makes lines of them for the road of events.
///
/// A query has the first word on each character. What has come of a line when a query starts goes on there, and comes
/// back when it was no part of the answer.
class LineReader : public QObject
{
    Q_OBJECT

public:
    /// All must outlive this object.
    LineReader(SerialControl &serial, LinkMonitor &link, EventRoad &road, QObject *parent = nullptr);
    ~LineReader() override;

private:
    void ConZeb_OnComm();
    void take(char character);
    void takeBack();

    SerialControl &m_serial;
    LinkMonitor &m_link;
    EventRoad &m_road;
    QByteArray m_line;
};
