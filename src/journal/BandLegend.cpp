#include "journal/BandLegend.h"

#include "journal/DayBand.h"
#include "texts/OwnText.h"

#include <QHBoxLayout>
#include <QPainter>

namespace {

struct Meaning {
    Listening state; ///< for those that are painted alike
    OwnText word;
};

constexpr std::array meanings = {Meaning{Listening::Listened, OwnText::Listened},
                                 Meaning{Listening::NotRunning, OwnText::NotListened},
                                 Meaning{Listening::NotKnown, OwnText::ListeningNotKnown}};

/// A word behind a piece of band.
class Word : public QLabel
{
public:
    explicit Word(Listening state) : m_state(state)
    {
        setTextFormat(Qt::PlainText);
        setContentsMargins(3 * fontMetrics().ascent(), 0, 0, 0);
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QLabel::paintEvent(event);
        QPainter painter(this);
        const QRect place(0, (height() - fontMetrics().ascent()) / 2, contentsMargins().left(), fontMetrics().ascent());
        const QRect piece = place.adjusted(0, 0, -place.height() / 2, 0);
        painter.fillRect(piece, palette().base());
        DayBand::paintSpan(painter, piece, m_state);
    }

private:
    const Listening m_state;
};

} // namespace

BandLegend::BandLegend(QWidget *parent) : Grouping(parent)
{
    setObjectName(QStringLiteral("Legend"));
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2 * fontMetrics().height());
    for (size_t i = 0; i < meanings.size(); ++i) {
        m_words.at(i) = new Word(meanings.at(i).state);
        row->addWidget(m_words.at(i));
    }
    row->addStretch();
}

void BandLegend::setCaptions(const Texts &texts)
{
    setAccessibleName(texts[OwnText::JournalBands]);
    for (size_t i = 0; i < meanings.size(); ++i)
        m_words.at(i)->setText(texts[meanings.at(i).word]);
}
