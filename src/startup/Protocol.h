#pragma once

/// How the interface talks to what stands behind it; the numbers are those of the settings file. A file may hold a
/// number that nobody has: whoever asks treats it as not known.
enum class Protocol {
    NotKnown = 0,
    Wiegand26 = 1,
    Wiegand26SiteChannel = 3,
    Wiegand26Site = 4,
    Wiegand37 = 5,
    Wiegand37Channel = 6,
    Wiegand37SiteChannel = 7,
    Wiegand37Site = 8,
    Wiegand37D10302 = 9,
    Wiegand37D10302Bcd = 10,
    Wiegand50 = 11,
    Wiegand50Channel = 12,
    Tolmar = 13,
    Iso2 = 14,
    RsC = 15,
};
