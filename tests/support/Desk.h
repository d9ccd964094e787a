#pragma once

#include "mainwindow/MDIForm1.h"
#include "platform/PseudoTerminal.h"
#include "platform/SerialTransport.h"
#include "support/Windows.h"
#include "texts/OwnText.h"

#include <QAction>

inline const QByteArray answer = interfaceBanner() + "\rRS_C CH:1 ENABLE\rVERSIONE 1.4\r";

inline const QString onLine = u"MULTIPROTOCOL INTERFACE ON LINE"_s;
inline const QString noPort = u"THE CONFIGURED SERIAL PORT IS NOT AVAILABLE"_s;

/// Notes what the device is told about its RTS line.
struct NotingLine : SerialTransport {
    QStringList rtsTold;

    void setEnableLine(bool asserted) override
    {
        rtsTold.append(asserted ? u"asserted"_s : u"released"_s);
        SerialTransport::setEnableLine(asserted);
    }
};

/// The whole program with its window, and an interface that answers as long as it is told to.
struct Desk {
    explicit Desk(const QByteArray &settings = "COM=7\r\nLINGUA=2\r\nCHECK=1\r\n", const QString &password = {},
                  Messages *realMessages = nullptr)
        : used(realMessages ? *realMessages : messages)
    {
        test.addUsers({listOf("1,TX,Rossi,Mario")});
        if (!password.isEmpty())
            test.setPassword(password);
        // Of two lines the first counts.
        test.write(u"Impost.stp"_s, settings + "NUMEVOD=25\r\nCHECK=0\r\nPRN=-1\r\n");
        if (!interface.open() || program.prepare(2, {}))
            qFatal("the program cannot be prepared");
        QObject::connect(&interface, &PseudoTerminal::readyRead, [this] {
            asked += interface.read();
            if (answers && asked.endsWith("&IC"))
                interface.write(answer);
        });
        window.load();
    }

    void comeToLife()
    {
        window.findChild<QTimer *>(u"tmrShow"_s)->start(0);
        QTRY_VERIFY(window.isEnabled());
    }
    void goOnLine()
    {
        comeToLife();
        QTRY_COMPARE(panel(5), onLine);
    }
    void pass(int seconds)
    {
        for (int i = 0; i < seconds; ++i) {
            clock.milliseconds += 1000;
            program.link().wake();
            QCoreApplication::processEvents();
        }
    }
    QAction *entry(const char *name) { return window.findChild<QAction *>(QString::fromLatin1(name)); }
    QString panel(int number) { return label(number)->text(); }
    QString led() { return label(6)->property("file").toString(); }
    QLabel *label(int number) { return window.findChild<QLabel *>(u"StatusBar1.Panels(%1)"_s.arg(number)); }
    ChildWindow *open(const char *name) { return window.findChild<ChildWindow *>(QString::fromLatin1(name)); }
    void click(ChildWindow *on, const char *button)
    {
        QTest::mouseClick(on->findChild<QAbstractButton *>(QString::fromLatin1(button)), Qt::LeftButton);
    }
    /// At the keyboard, whatever has it.
    void type(const char *text)
    {
        for (const char *key = text; *key != 0; ++key)
            QTest::keyClick(window.windowHandle(), *key);
    }
    /// The operator closes the window, and agrees that supervision ends.
    void close()
    {
        messages.answers = {Messages::Answer::Yes};
        QVERIFY(!window.close() && window.isVisible());
        QTRY_VERIFY(!window.isVisible());
        QCOMPARE(messages.take(), QStringList{u"Question: "_s + program.texts()[OwnText::AskEndSupervision]});
    }

    /// The same, and one of the windows refuses.
    void closeInVain()
    {
        messages.answers = {Messages::Answer::Yes};
        QVERIFY(!window.close());
        QTRY_COMPARE(messages.standing, 0);
        QCOMPARE(messages.take().size(), 1);
    }

    TestFolder test;
    FakeClock clock;
    FakePrinters printers;
    FakeMessages messages;
    Messages &used;
    PseudoTerminal interface {
        test.directory.filePath(u"Porte/COM7"_s)
    };
    bool answers = true;
    QByteArray asked;
    NotingLine *line = nullptr;
    Program program{{test.directory.path()}, clock, printers, [this](const SerialPorts &ports) {
                        auto made = std::make_unique<NotingLine>();
                        line = made.get();
                        return std::make_unique<SerialControl>(ports, std::move(made));
                    }};
    MDIForm1 window{program, used};
};
