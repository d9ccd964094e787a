#pragma once

#include "archive/Command.h"
#include "archive/Output.h"
#include "support/Fixtures.h"

/// What a command of the archive tool writes and tells.
struct ToolRun : tool::Output {
    explicit ToolRun(TestFolder &folder) : test(folder) { texts.fill(2); }

    tool::Site site()
    {
        return {archives, texts, clock, [this](const Message &message) { told.append(texts.sentence(message)); }};
    }
    Result<void> write(QByteArray &bytes, const QDeadlineTimer &) override
    {
        output += std::exchange(bytes, {});
        return {};
    }
    QList<QByteArray> lines() const
    {
        QList<QByteArray> all = output.split('\n');
        all.removeLast();
        return all;
    }

    TestFolder &test;
    ArchiveStore archives{test.folder}; ///< as a program of its own has them
    FakeClock clock;
    Texts texts;
    QByteArray output;
    QStringList told;
};
