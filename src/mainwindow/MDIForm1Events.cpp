#include "events/frmEventi.h"
#include "events/frmEventiOdierni.h"
#include "events/frmNumEvOd.h"
#include "events/frmPrnLastEv.h"
#include "mainwindow/MDIForm1.h"
#include "prefs/frmImpStampa.h"

// The windows that show, search and print events, and the choice of the printer.

void MDIForm1::mnuEventi_Click()
{
    frmEventi *made = nullptr;
    openOnce<frmEventi>([&] {
        made =
            new frmEventi(m_program.texts(), m_messages, m_program.archives(), m_program.clock(), m_program.printer());
        return made;
    });
    if (made && !made->open())
        made->unload();
}

void MDIForm1::mnuEventiOdierni_Click()
{
    frmEventiOdierni *made = nullptr;
    openOnce<frmEventiOdierni>([&] {
        made = new frmEventiOdierni(m_program.texts(), m_messages, m_program.archives(), m_program.clock(),
                                    m_program.printer());
        return made;
    });
    if (!made)
        return;
    if (made->open())
        made->setNumEv(m_program.settings().NumEvOd);
    else
        made->unload();
}

void MDIForm1::mnuNumEvOdVis_Click()
{
    openOnce<frmNumEvOd>([this] {
        auto *window = new frmNumEvOd(m_program.texts(), m_program.settings(), m_messages);
        connect(window, &frmNumEvOd::NumeroCambiato, this, &MDIForm1::applyTexts);
        return window;
    });
}

void MDIForm1::mnuPrnLastEv_Click()
{
    frmPrnLastEv *made = nullptr;
    openOnce<frmPrnLastEv>([&] {
        made = new frmPrnLastEv({m_program.log(), m_program.archives()}, m_program.printer(), m_program.texts(),
                                m_messages);
        return made;
    });
    if (made && !made->open())
        made->unload();
}

void MDIForm1::mnuImpPrn_Click()
{
    openOnce<frmImpStampa>([this] { return new frmImpStampa(m_program.texts(), m_program.printer(), m_messages); });
}
