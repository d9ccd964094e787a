#pragma once

#include <QFileDialog>

class ProgramFolder;
class Texts;

/// Has the operator choose the register that the users are to be restored from; the last backup is offered first.
class frmRestore : public QFileDialog
{
    Q_OBJECT

public:
    /// @param folder  the program folder
    frmRestore(const Texts &texts, const ProgramFolder &folder, QWidget *parent);
};
