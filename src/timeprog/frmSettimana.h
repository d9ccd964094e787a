#pragma once

#include "platform/Clock.h"
#include "widgets/GridEditor.h"

class StripPicture;

/// The weekly programme: time bands, and the days on which each of them counts.
class frmSettimana : public GridEditor
{
    Q_OBJECT

public:
    /// All must outlive this window.
    frmSettimana(const Texts &texts, Messages &messages, ArchiveStore &archives, const Clock &clock,
                 QWidget *parent = nullptr);

    void setCaptions() override;

protected:
    std::optional<Refusal> check(Entry &entry) const override;
    RecordSet::Values modified(const Entry &entry) const override;
    RecordSet::Values added(const Entry &entry) const override;
    void cellPressed(int column) override;
    void showPicture() override;

private:
    static Form form(const Texts &texts);

    const Texts &m_texts;
    const Clock &m_clock;
    StripPicture *m_picture;
};
