#pragma once

#include <QByteArray>
#include <QHash>
#include <QStringList>

#include <sqlite3.h>

/// A layer under every database that is opened while it lives: notes what reaches the disk and in which order, can stop
/// at the n-th step as a power cut does, and can refuse to write.
class RecordingVfs
{
public:
    RecordingVfs();
    ~RecordingVfs();
    RecordingVfs(const RecordingVfs &) = delete;
    RecordingVfs &operator=(const RecordingVfs &) = delete;

    QStringList steps; ///< "write NAME", "flush NAME", "delete NAME"
    int stopAt = -1;   ///< number of steps that are still carried out, -1 = all
    int refusal = 0;   ///< code that writing ends with, 0 = it works
    /// What the system says when the file of the shared memory is to grow, 0 = it does
    int sharedMemoryError = 0;

    /// What a disk holds that has kept nothing but what was flushed.
    void loseWhatWasNotFlushed();

    /// Called by the layer. @return the code that the step ends with instead, 0 = it is carried out
    int step(const char *what, const QString &path);
    void flushed(const QString &path);

private:
    QHash<QString, QByteArray> m_onDisk;
};
