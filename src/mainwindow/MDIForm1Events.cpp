#include "events/frmEventi.h"
#include "events/frmEventiOdierni.h"
#include "events/frmNumEvOd.h"
#include "mainwindow/MDIForm1.h"

// The windows that show, search and print events.

void MDIForm1::mnuEventi_Click()
{
    frmEventi *made = nullptr;
    openOnce<frmEventi>([&] {
        made = new frmEventi(m_program.texts(), m_messages, m_program.archives(), m_program.clock());
        return made;
    });
    if (made && !made->open())
        made->unload();
}

void MDIForm1::mnuEventiOdierni_Click()
{
    frmEventiOdierni *made = nullptr;
    openOnce<frmEventiOdierni>([&] {
        made = new frmEventiOdierni(m_program.texts(), m_messages, m_program.archives(), m_program.clock());
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
