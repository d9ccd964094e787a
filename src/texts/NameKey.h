#pragma once

#include <QString>

/// What a name is sorted by: two names compare as their keys do, without regard to case and accents ("D'Angelò" stands
/// beside "d'angelo", "Österle" beside "Ostermann").
QString nameKey(QStringView name);
