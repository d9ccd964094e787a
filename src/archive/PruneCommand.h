#pragma once

#include "archive/Command.h"
#include "archive/Output.h"
#include "platform/StandardInput.h"

namespace tool {

/// Deletes the days, and the journal's years, before a date. They are listed first, and somebody has to agree.
class PruneCommand : public Command
{
public:
    /// Days of the last so many days are not deleted.
    static constexpr int YoungestDays = 30;
    enum class Consent {
        Given,
        ToBeAsked,
        Impossible, ///< nobody is there to be asked
    };

    /// All must outlive this object. @param before  first day that stays
    PruneCommand(const Site &site, QDate before, Consent consent, Output &output);

    Result<bool> step(const QDeadlineTimer &until) override;
    bool hasFaults() const override { return m_hasFaults; }
    Message words(const Fault &fault) const override;
    int pause() const override;

    /// Takes what was answered to the question. Only a yes in the language of the texts is one.
    void answer(const QString &text);

private:
    Result<void> list();
    Result<bool> ask();
    Result<bool> begin();
    Result<bool> remove();
    Result<bool> refuse(Message why);

    enum class Stage { List, Ask, Wait, Remove, End };

    const Site m_site;
    const QDate m_before;
    Consent m_consent;
    Pending m_pending;
    Stage m_stage = Stage::List;
    QStringList m_names; ///< still to be deleted
    qsizetype m_removed = 0;
    bool m_hasFaults = false;
    std::optional<Message> m_refusal;
    std::unique_ptr<StandardInput> m_input;
};

} // namespace tool
