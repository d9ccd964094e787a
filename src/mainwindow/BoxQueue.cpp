#include "mainwindow/BoxQueue.h"

#include <QWidget>

BoxQueue::BoxQueue(QWidget &over, Source source) : m_over(over), m_source(source)
{
    connect(&source.notices, &Notices::posted, this, &BoxQueue::showNext, Qt::QueuedConnection);
}

void BoxQueue::tell(const QString &text, Then then)
{
    enqueue([this, text, then = std::move(then)] { show(Icon::Critical, text, then); });
}

void BoxQueue::ask(std::function<Message()> question, std::function<void(bool)> then)
{
    enqueue([this, question = std::move(question), then = std::move(then)] {
        m_isShown = true;
        m_source.messages.ask(&m_over, m_source.texts.sentence(question()), Messages::Buttons::YesNo,
                              [this, then](Messages::Answer answer) {
                                  m_isShown = false;
                                  then(answer == Messages::Answer::Yes);
                                  showNext();
                              });
    });
}

void BoxQueue::whenTold(Then then)
{
    enqueue(std::move(then));
}

void BoxQueue::tellLast(Icon icon, const QString &text, Then then)
{
    m_source.messages.show(&m_over, icon, text, std::move(then));
}

void BoxQueue::enqueue(Then show)
{
    m_waiting.append(std::move(show));
    showNext();
}

void BoxQueue::showNext()
{
    while (!m_isShown && m_over.isEnabled()) {
        if (!m_source.notices.isEmpty()) {
            const Notice notice = m_source.notices.take();
            show(notice.icon, m_source.texts.sentence(notice.message), {});
        } else if (!m_waiting.isEmpty()) {
            m_waiting.takeFirst()();
        } else {
            return;
        }
    }
}

void BoxQueue::show(Icon icon, const QString &text, const Then &then)
{
    m_isShown = true;
    m_source.messages.show(&m_over, icon, text, [this, then] {
        m_isShown = false;
        if (then)
            then();
        showNext();
    });
}
