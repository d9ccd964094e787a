#include "support/FakeMessages.h"

#include <QWidget>

FakeMessages::~FakeMessages()
{
    if (!shown.isEmpty())
        qFatal("messages that the test did not expect: %s", qPrintable(shown.join(QLatin1String(" / "))));
}

void FakeMessages::show(QWidget *over, Icon icon, const QString &text, std::function<void()> then)
{
    static const QStringList names = {QStringLiteral("None"), QStringLiteral("Information"), QStringLiteral("Question"),
                                      QStringLiteral("Exclamation"), QStringLiteral("Critical")};
    shown.append(names[static_cast<int>(icon)] + QStringLiteral(": ") + text);
    stand(over, std::move(then));
}

void FakeMessages::ask(QWidget *over, const QString &text, Buttons, std::function<void(Answer)> then)
{
    shown.append(QStringLiteral("Question: ") + text);
    const Answer answer = answers.isEmpty() ? Answer::No : answers.takeFirst();
    stand(over, [then = std::move(then), answer] { then(answer); });
}

void FakeMessages::choose(QWidget *over, const QString &text, const QString &, const QString &,
                          std::function<void(bool)> then)
{
    ask(over, text, Buttons::YesNo, [then = std::move(then)](Answer answer) { then(answer != Answer::Yes); });
}

void FakeMessages::stand(QWidget *over, std::function<void()> then)
{
    most = qMax(most, ++standing);
    const auto close = [this, then = std::move(then)] {
        --standing;
        if (then)
            then();
    };
    QMetaObject::invokeMethod(over, close, Qt::QueuedConnection);
}
