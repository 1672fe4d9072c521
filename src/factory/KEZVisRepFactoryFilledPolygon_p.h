#ifndef KEZVISREPFACTORYFILLEDPOLYGON_P_H
#define KEZVISREPFACTORYFILLEDPOLYGON_P_H

// What the stages of the filled-polygon operations share: their tolerances, the point lists that they
// hand to the triangulator, and the normalisation behind their direction tests.
//
// An outline with holes becomes a surface in four stages, each in a file of its own, called in this order
// by KEZVisRepFactory::CreateFilledPolygonPrimitive:
//   1. ring cleaning (KEZVisRepFactoryRingCleaning_p.h): the rings are simplified and walked up to the
//      first point that repeats an earlier one;
//   2. hole tests (KEZVisRepFactoryHoleTests_p.h): holes that leave the outline, touch it or cross
//      another hole are left out;
//   3. triangulation (KEZVisRepFactoryTriangulation_p.h): the constrained Delaunay triangulator;
//   4. surface rebuild (KEZVisRepFactorySurfaceRebuild_p.h): the mesh is indexed again by vertex keys of
//      three decimals.
// KEZVisRepFactory::CreateFilledPolygonRep extrudes the surface into a solid
// (KEZVisRepFactoryExtrusion_p.h).
//
// The stages live in the namespace KEZVisFilledPolygon; the library hides their symbols. Never installed.

#include "triangulation/Point.h"

#include <KEZMathVector2D.h>

#include <vector>

namespace KEZVisFilledPolygon {

// ---------------------------------------------------------------------------
// Tolerances

// Largest spread of z; per-axis distance under which a point repeats an earlier one; |dy| under which an
// edge counts as horizontal; smallest angle between two perpendiculars that tells two sides apart.
constexpr double kTolerance = 0.001;
// Squared distance under which two points are one point.
constexpr double kSamePointSquared = 1e-6;

using PointVector = std::vector<p2t::Point *>;

// ---------------------------------------------------------------------------
// Small geometry

inline KEZMathVector2D Normalised(double x, double y)
{
    KEZMathVector2D vector(x, y);
    vector.Normalize();
    return vector;
}

} // namespace KEZVisFilledPolygon

#endif // KEZVISREPFACTORYFILLEDPOLYGON_P_H
