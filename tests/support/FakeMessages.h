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
        if (then)
            QMetaObject::invokeMethod(
                over, [then = std::move(then)] { then(); }, Qt::QueuedConnection);
    }

    void ask(QWidget *over, const QString &text, Buttons, std::function<void(Answer)> then) override
    {
        shown.append(QStringLiteral("Question: ") + text);
        const Answer answer = answers.isEmpty() ? Answer::No : answers.takeFirst();
        QMetaObject::invokeMethod(
            over, [then = std::move(then), answer] { then(answer); }, Qt::QueuedConnection);
    }
};
