// Arcs for properties over random input; natively only.
#pragma once

#include <rapidcheck.h>

#include <cmath>

#include "GeomEnts/Arc.h"

namespace TamLib {

// From -extent to extent, in a million steps either way.
inline double AnyNumber(double extent) {
    return *rc::gen::inRange(-1000000, 1000001) / 1e6 * extent;
}

// Chords of a metre to some hundred, heights from a flat arc to nearly the whole circle: up to
// `steepest` times the chord.
inline Arc AnyArc(bool onMap, double steepest) {
    Point3d start(AnyNumber(100), AnyNumber(100), AnyNumber(10));
    if (onMap) start += Point3d(25e6, 7e6, 0);
    const Line chord(start, start + Point3d(AnyNumber(100), AnyNumber(100), AnyNumber(10)));
    RC_PRE(chord.Length2d() > 1.0);
    const double height = AnyNumber(steepest) * chord.Length2d();
    RC_PRE(std::fabs(height) > 0.01 * chord.Length2d());
    return {height, chord};
}

// How far doubles of an arc's place are apart, some steps of it.
inline double Slack(const Arc& arc) {
    return 1e-9 * (1 + arc.Radius()) + 1e-14 * (std::fabs(arc.x1) + std::fabs(arc.y1));
}

}  // namespace TamLib
