#pragma once

#include "widgets/Messages.h"

#include <QList>
#include <QPointer>
#include <QStringList>
#include <QWidget>

/// Messages that a test reads instead of an operator; they are closed at once. Those that no test has taken fail it.
class FakeMessages : public Messages
{
public:
    QStringList shown;     ///< "Icon: text", oldest first
    QList<Answer> answers; ///< to the questions to come; none left = No
    int standing = 0;      ///< boxes that no answer has closed yet
    int most = 0;          ///< that stood at once

    ~FakeMessages() override
    {
        if (!shown.isEmpty())
            qFatal("messages that the test did not expect: %s", qPrintable(shown.join(QLatin1String(" / "))));
    }

    QStringList take() { return std::exchange(shown, {}); }

    void show(QWidget *over, Icon icon, const QString &text, std::function<void()> then = {}) override
    {
        static const QStringList names = {QStringLiteral("None"), QStringLiteral("Information"),
                                          QStringLiteral("Question"), QStringLiteral("Exclamation"),
                                          QStringLiteral("Critical")};
        shown.append(names[static_cast<int>(icon)] + QStringLiteral(": ") + text);
        stand(over, std::move(then));
    }

    void ask(QWidget *over, const QString &text, Buttons, std::function<void(Answer)> then) override
    {
        shown.append(QStringLiteral("Question: ") + text);
        const Answer answer = answers.isEmpty() ? Answer::No : answers.takeFirst();
        stand(over, [then = std::move(then), answer] { then(answer); });
    }

    /// Yes chooses the first way.
    void choose(QWidget *over, const QString &text, const QString &, const QString &,
                std::function<void(bool)> then) override
    {
        ask(over, text, Buttons::YesNo, [then = std::move(then)](Answer answer) { then(answer != Answer::Yes); });
    }

private:
    void stand(QWidget *over, std::function<void()> then)
    {
        most = qMax(most, ++standing);
        const auto close = [this, then = std::move(then)] {
            --standing;
            if (then)
                then();
        };
        QMetaObject::invokeMethod(over, close, Qt::QueuedConnection);
    }
};
