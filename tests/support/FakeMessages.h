#pragma once

#include "widgets/Messages.h"

#include <QStringList>

/// Messages that a test reads instead of an operator; they are closed at once. Those that no test has taken fail it.
class FakeMessages : public Messages
{
public:
    QStringList shown;     ///< "Icon: text", oldest first
    QList<Answer> answers; ///< to the questions to come; none left = No
    int standing = 0;      ///< boxes that no answer has closed yet
    int most = 0;          ///< that stood at once

    ~FakeMessages() override;

    QStringList take() { return std::exchange(shown, {}); }

    void show(QWidget *over, Icon icon, const QString &text, std::function<void()> then = {}) override;
    void ask(QWidget *over, const QString &text, Buttons, std::function<void(Answer)> then) override;
    /// Yes chooses the first way.
    void choose(QWidget *over, const QString &text, const QString &, const QString &,
                std::function<void(bool)> then) override;

private:
    void stand(QWidget *over, std::function<void()> then);
};
