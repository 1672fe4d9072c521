// Internal test hooks of the triangulator.
//
// Some guards of the sweep protect against states that a consistent triangulation cannot reach: a
// constrained-edge walk that makes no progress, a neighbour that does not point back, a constrained
// edge that leaves the triangulated region. Tests drive those guards through these hooks, and read
// what the last sweep did. Production code never installs hooks.
#ifndef KEZ_TRIANGULATION_TEST_HOOKS_P_H
#define KEZ_TRIANGULATION_TEST_HOOKS_P_H

#include <string>

namespace p2t {
namespace detail {

struct TestHooks
{
    // Inputs: how to disturb the next sweeps.

    // Raise a std::runtime_error with throwMessage just before the point at this position of the
    // sweep order (0 is the lowest point) is swept; negative for never.
    int throwBeforeSweepIndex = -1;
    std::string throwMessage;
    // Re-enter every edge event with unchanged values instead of making progress.
    bool stallEdgeEvents = false;
    // Number of coming flip steps during constrained-edge processing that find no opposite point.
    int loseOppositePoints = 0;
    // Before the final stage, cut the neighbour links of every triangle around the outline's first
    // point, one-sidedly, as a front left broken by an interrupted sweep would be.
    bool breakFrontBeforeFinalization = false;

    // Skip the legalisation during the sweep, leaving the Delaunay property to the closing pass.
    bool skipSweepLegalization = false;
    // Run the closing pass even after a sweep that legalised everything (it runs by itself only
    // when the sweep left legalisation undone), to count what it finds.
    bool forceClosingPass = false;
    // When not negative, the flips that building a convex outline may make before it gives
    // way to incremental insertion with point location (instead of 16 a vertex and an allowance).
    long long convexOutlineWorkBudget = -1;
    // Check the whole mesh and front after every point and edge event; the first inconsistency found
    // ends up in inconsistency.
    bool verifyEveryStep = false;
    // How the mesh is built: as production code does it (Automatic: rings that are mostly convex or
    // straight, or smooth over long runs, by incremental insertion, falling back to the sweep if it fails, and others by the
    // sweep, switching to incremental insertion when the sweep's work outgrows its budget); by the
    // sweep alone (SweepOnly); or by incremental insertion from the start, falling back to the sweep
    // if it fails (IncrementalFirst).
    enum class Insertion { Automatic, SweepOnly, IncrementalFirst };
    Insertion insertion = Insertion::Automatic;

    // Outputs: what the last sweep did.

    std::string inconsistency;

    // Message of the std::runtime_error that ended the sweep early; empty if it ran through.
    std::string caughtError;
    // Number of points swept before the sweep ended.
    int sweptPoints = 0;
    // Number of times a sweep started (an abandoned one included); 0 when incremental insertion built
    // the mesh from the start.
    int sweepsStarted = 0;
    // The two artificial points below the point cloud (tail left, head right), in the caller's
    // coordinates.
    double tailX = 0.0, tailY = 0.0, headX = 0.0, headY = 0.0;
    // Whether the closing Delaunay pass over the result ran, and the flips it made.
    bool closingPassRan = false;
    int closingFlips = 0;
    // Whether the mesh that was finalized came from incremental insertion, and the work (flips and
    // steps along the front) of the run, abandoned attempts included.
    bool insertedIncrementally = false;
    // Whether that incremental insertion was the one for a single convex outline, which
    // puts back vertices taken away one by one and locates none.
    bool insertedAroundConvexOutline = false;
    unsigned long long work = 0;
    // Points that incremental insertion put on an existing edge (splitting it) rather than inside a
    // triangle.
    int pointsOnEdges = 0;
    // Edges that point location crossed, over all points of the last incremental insertion with
    // point location (0 after a sweep or an insertion around a convex outline).
    unsigned long long locateSteps = 0;
};

// Installs hooks for the following triangulations; nullptr removes them. Not thread-safe: tests only.
void SetTestHooks(TestHooks *hooks);

} // namespace detail
} // namespace p2t

#endif
