#pragma once

/// The texts that came with this program: faults and functions for which the table of captions and messages has none.
/// "%1" and "%2" stand for names of files, ports or settings.
enum class OwnText : int {
    FolderMissing,
    FolderNotWritable,
    FolderInUse,
    ArchiviMissing,
    TemplateMissing,
    FolderCannotBePrepared,
    SettingUnusable,
    SettingNotSaved,
    NoPortChosen,
    PortLost,
    EventNotStored,
    DayArchiveUnavailable,
    DayArchiveSetAside,
    UsersUnreadable,
    ConsoleStarted,
    ConsoleDemo,
    DemoCannotStart,
    Notice,
    ReasonNotFound,
    ReasonAccessDenied,
    ReasonAlreadyInUse,
    ReasonLocked,
    ReasonDiskFull,
    ReasonInputOutput,
    ReasonDamaged,
    ReasonNotOpen,
};

inline constexpr int OwnTextCount = static_cast<int>(OwnText::ReasonNotOpen) + 1;
