#pragma once

#include <QString>

#include <functional>

class Messages;
class QWidget;
class Texts;

/// A file that the operator is asked for, to be written.
struct FileToSave {
    QString title;
    QString filter; ///< as of QFileDialog
    QString ending; ///< ".csv"; added to a name without it
};

/// Has the operator choose a file, and asks him whether one that is there may go. Nothing waits.
/// @param over  window of whoever asks; where it goes, the dialog goes, and nothing is called
/// @param then  called with the absolute path, "" when he wants none
void askFileToSave(QWidget *over, Messages &messages, const Texts &texts, const FileToSave &wanted,
                   const std::function<void(const QString &file)> &then);
