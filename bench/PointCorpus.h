#pragma once

#include "platform/TextRecognizer.h"

#include <QPointF>
#include <QString>
#include <QStringList>

#include <vector>

namespace nimbrelle::bench {

/// A place where a pointer may rest.
struct RestingPoint {
    QPointF at; ///< normalized to the picture, y upward
    QString word; ///< the English word there; empty where there is none
};

/// One drawn picture of 760 by 200 points, with the points to rest on.
struct Scenery {
    Picture picture;
    std::vector<RestingPoint> points;
    QStringList english; ///< every English word in it
};

enum class Subject {
    english, ///< text in several fonts, sizes and schemes
    highlighted, ///< the same, each point on a word that a program shows as marked
    chinese, ///< Chinese text alone
    mixed, ///< an English paragraph between Chinese ones, the points in the English
    icons, ///< toolbars
};

/// The same pictures on every machine with the same fonts.
std::vector<Scenery> sceneries(Subject subject);

} // namespace nimbrelle::bench
