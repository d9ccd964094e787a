#include "simulator/SimulatorOptions.h"

namespace simulator {

QString helpText()
{
    return QStringLiteral(R"(kor-simulator: a Kor interface on a pseudo-terminal, for training, demonstration and tests.

It answers the supervisor's configuration query and sends event records, at the speed of the real line. Commands come
from the standard input or from a file. It runs until Ctrl+C, SIGTERM or the command "quit".

Usage: kor-simulator [options]

The line
  --link PATH           symbolic link to the device, for example Porte/COM5 in the program folder; it is renewed when
                        it exists and removed at the end (default: none, the device's name is printed)
  --fast                send as fast as the reader takes it (default: 960 bytes a second)

What the interface is set to
  --protocol NAME       WIEGAND 26 BIT, WIEGAND 37 BIT HID, WIEGAND 37 BIT HID D10302, WIEGAND 50 BIT, ISO2, TOLMAR,
                        RS_C, or any other text (default: WIEGAND 26 BIT)
  --site                with site code
  --channel-info        with channel information
  --channels LIST       enabled channels, no blanks (default: 1234)
  --disabled            the interface is disabled; its records carry the mark D
  --pc, --bridge, --j1  the answer shows PC, BRIDGE, J1
  --version-text TEXT   firmware version, three characters (default: 1.4)
  --crlf                lines of the answer end with CR LF (default: CR)

Faults
  --fault NAME          silence      never answers
                        late         answers 1.2 seconds after the query
                        third        answers only each third query
                        empty        the second line is empty
                        no-third     the third line is missing
                        garbage      random bytes instead of an answer
                        no-channels  the second line lacks the channels
                        none         (default)

Records made by themselves, while a program has the line open
  --burst N             N records at once, to begin with (1 to 100000)
  --rate N              N records a second, fractions allowed (0.001 to 10000; default with --count: 1)
  --count N             end after N records of that rate (default: no end)
  --codes LIST          codes to send in turn, on channels A to D in turn (default: tx:12345,tx:67890,dks:777)
  --seed N              draw code and channel by chance instead; the same number draws the same

Commands from a file
  --file PATH           carry out the commands in it; records and "wait" are put off while no program has the line open
  --rate N              its commands that send follow each other N a second (default: at once)
  --repeat              begin again at its end

General
  --exit-when-done      end when the burst, the count and the file are sent and read (default: run on)
  --verbose             tell each record, and programs that open and leave the line
  -h, --help            this text

Commands, one a line; blank lines and lines with # are ignored
  tx CODE [A|B|C|D] [off] [disabled]
                        a transmitter's record, on channel A unless told; off: the channel was not enabled for the
                        code; disabled: the interface was disabled
  dks CODE ...          the same for a keypad
  record TEXT           TEXT and CR LF
  raw TEXT              TEXT exactly; in both, \r \n \\ and \xNN stand for single bytes
  burst N               N records of --codes at once
  repower [0|128]       the byte that tells a return of power (default 0)
  off, on               switch the interface off; on, with the byte 0
  unplug, plug          pull the adapter out; plug it in again, as a new device under the same link
  fault NAME            as --fault
  protocol NAME         as --protocol
  wait SECONDS          put off the commands after it
  status                tell what it is set to
  quit                  end
"off" lets what was sent before leave, "unplug" and "quit" let it be read: for at most a second longer than the line
needs for it.

Exit code: 0 ended as asked, 1 pseudo-terminal, link or file cannot be used, 2 wrong arguments.

Examples
  kor-simulator --link ~/kor/Porte/COM5 --rate 0.2 --codes tx:12345,tx:4711,dks:777 --seed 1
      a demonstration: an event each five seconds
  kor-simulator --link /tmp/kor/COM5 --file day.txt --rate 2 --exit-when-done
      a recorded day, two events a second, then the end
  kor-simulator --link /tmp/kor/COM5 --protocol RS_C --fault third --verbose
      training: the answer comes with the third query; type "fault none", "off", "on", "tx 12345 B" while it runs
)");
}

} // namespace simulator
