#pragma once

#include "widgets/GridEditor.h"

/// The holidays: intervals of days on which no time band counts.
class frmFerie : public GridEditor
{
    Q_OBJECT

public:
    /// All must outlive this window.
    frmFerie(const Texts &texts, Messages &messages, ArchiveStore &archives, QWidget *parent = nullptr);

protected:
    std::optional<Refusal> check(Entry &entry) const override;
    RecordSet::Values modified(const Entry &entry) const override;

private:
    static Form form(const Texts &texts);
};
