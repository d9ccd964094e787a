#pragma once

#include "texts/Texts.h"
#include "widgets/Accessibility.h"

#include <QLabel>

#include <array>

/// Says what the patterns of the bands mean, each in front of its word.
class BandLegend : public Grouping
{
    Q_OBJECT

public:
    explicit BandLegend(QWidget *parent = nullptr);

    void setCaptions(const Texts &texts);

private:
    std::array<QLabel *, 3> m_words{};
};
