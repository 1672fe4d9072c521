#ifndef KEZVISREPFACTORYHOLETESTS_P_H
#define KEZVISREPFACTORYHOLETESTS_P_H

// Hole tests, the second stage of a filled polygon. Of the cleaned holes, those that lie inside the
// outline without touching it (IsHoleInsideOutline) are kept; of these, every two that cross each other
// (FindIntersectingHoles) are left out of the triangulation. Holes that merely touch each other stay.
//
// What the stage promises: both lists below keep the input order of the holes and point into the
// cleaned rings, which must outlive them; the decisions are exactly those of the rules' own formulas,
// evaluated as written, in about n log n for n points. Never installed.

#include "factory/KEZVisRepFactoryRingCleaning_p.h"

#include <vector>

namespace KEZVisFilledPolygon {

struct HoleSelection
{
    // The holes inside the outline. Their points become vertices of the surface, also those of holes
    // that are left out of the triangulation for crossing another.
    std::vector<const WalkedRing *> inside;
    // The points of those holes inside that cross no other: the holes of the triangulation.
    std::vector<const PointVector *> triangulated;
};

// Tests the holes of `rings` against its outline and against each other.
HoleSelection SelectHoles(const CleanedRings &rings);

} // namespace KEZVisFilledPolygon

#endif // KEZVISREPFACTORYHOLETESTS_P_H
