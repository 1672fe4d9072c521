#ifndef KEZVISREPFACTORY_H
#define KEZVISREPFACTORY_H

#include "KEZVisOptions.h"
#include "KEZVisPolylinePrimitive.h"
#include "KEZVisRep.h"
#include "KEZVisRepGraphics.h"
#include "KEZVisSurfacePrimitive.h"
#include "kezvisualization_export.h"

#include <QColor>
#include <QImage>
#include <QList>
#include <QRect>
#include <QSize>

#include <KEZMathBoundingBox.h>
#include <KEZMathPlane.h>
#include <KEZMathPoint.h>
#include <KEZMathSetOfPoints.h>
#include <KEZMathVector.h>

#include <QFlags>

class KEZTopBody;
class KEZTopVertex;

/*!
 * \class KEZVisRepFactory
 * \brief Ready-made display geometry in one static call.
 *
 * A class of static operations only, without data of its own. Most shapes
 * come in pairs: a Create...Primitive that builds the geometry, and a
 * Create...Rep that wraps the same shape in a KEZVisRepGraphics with display
 * options. The caller owns whatever an operation returns; a rep owns its
 * primitives. The shape operations never return null: their failures are
 * exceptions, and a rep operation passes on the exception of its primitive
 * unchanged. The filled-polygon operations are the exception: bad geometry
 * there gives null or less geometry and never throws.
 *
 * Every surface is a plain indexed triangle list, built with the array
 * constructor of KEZVisSurfacePrimitive, and solids have no caps unless said
 * so. Where an operation passes no normals, the surface works them out by its
 * own rule. Each operation allocates its arrays once at their final size and
 * fills them in one pass.
 *
 * The operations hold no state and touch no shared data: they may run on any
 * thread at the same time, as long as each works on data of its own.
 *
 * Regular shapes on a circle: the circle round the origin gets the given
 * normal or axis and no start direction, so the circle chooses where corner 0
 * lies; with the normal (0, 0, 1) that is origin + (radius, 0, 0), and the
 * corners run counter-clockwise seen from the tip of the normal. Corner i of
 * \c sides lies at the angle (2 i) pi / sides, with pi = 3.141592653589793.
 *
 * A normal or axis without magnitude is refused by the circle with
 * KEZMathZeroMagnitudeVectorException. Whatever an operation has allocated
 * when it throws is freed again.
 *
 * Counts: a side count below 1 throws KEZSysOutOfBoundsException with the
 * count as the value, 1 as the lower limit, no upper limit (an invalid
 * QVariant) and both limits included. A shape whose vertexes or triangles
 * could not be numbered by an int throws std::bad_array_new_length, a
 * std::bad_alloc, before anything is allocated.
 */
class QIODevice;
class QPainter;

class KEZVISUALIZATION_EXPORT KEZVisRepFactory
{
public:
    //! A rep of one connected KEZVisPolylinePrimitive through \a points, with \a options.
    static KEZVisRep *CreatePolylineRep(KEZMathSetOfPoints const &points, KEZVisOptions const &options);

    //! A rep of CreatePlaneBoundaryEdgesPrimitive(\a points) with \a options.
    static KEZVisRep *CreatePlaneBoundaryEdgesRep(KEZMathSetOfPoints const &points, KEZVisOptions const &options);

    //! A rep of CreatePlaneSurfacePrimitive(\a points, \a normal) with \a options.
    static KEZVisRep *CreatePlaneSurfaceRep(KEZMathSetOfPoints const &points, KEZMathVector const &normal,
                                            KEZVisOptions const &options);

    /*!
     * A plane: one rep of two primitives, the surface of
     * CreatePlaneSurfacePrimitive(\a points, \a normal) first, drawn with
     * \a surfaceOptions, then the outline of
     * CreatePlaneBoundaryEdgesPrimitive(\a points), drawn with \a edgeOptions.
     */
    static KEZVisRep *CreatePlaneRep(KEZMathSetOfPoints const &points, KEZMathVector const &normal,
                                     KEZVisOptions const &surfaceOptions, KEZVisOptions const &edgeOptions);

    //! A rep of CreatePolygonPrimitive(\a origin, \a normal, \a radius, \a sides) with \a options.
    static KEZVisRep *CreatePolygonRep(KEZMathPoint const &origin, KEZMathVector const &normal, double radius,
                                       int sides, KEZVisOptions const &options);

    //! A rep of CreatePrismPrimitive(\a origin, \a axis, \a radius, \a height, \a sides) with \a options.
    static KEZVisRep *CreatePrismRep(KEZMathPoint const &origin, KEZMathVector const &axis, double radius,
                                     double height, int sides, KEZVisOptions const &options);

    //! A rep of CreatePyramidPrimitive(\a origin, \a axis, \a radius, \a height, \a sides) with \a options.
    static KEZVisRep *CreatePyramidRep(KEZMathPoint const &origin, KEZMathVector const &axis, double radius,
                                       double height, int sides, KEZVisOptions const &options);

    //! A rep of CreateSpherePrimitive(\a center, \a radius, \a divisions) with \a options.
    static KEZVisRep *CreateSphereRep(KEZMathPoint const &center, double radius, int divisions,
                                      KEZVisOptions const &options);

    /*!
     * The closed outline of \a points: a connected polyline through the
     * points and back to the first, n + 1 points for n points.
     *
     * An empty list gives an empty polyline (no points) rather than touching a
     * first point that is not there.
     */
    static KEZVisPolylinePrimitive *CreatePlaneBoundaryEdgesPrimitive(KEZMathSetOfPoints const &points);

    /*!
     * The surface of a plane outline: the points in order are the vertexes,
     * and the triangles a fan from vertex 0, (0, 1, 2), (0, 2, 3) and so on to
     * (0, n - 2, n - 1). The points are taken to be convex and planar, which
     * is not checked. The triangle normals are \a normal as given, not
     * normalised; the normal array handed to the surface holds one entry per
     * vertex, more than the surface reads, which is harmless.
     *
     * Fewer than three points give a surface of those vertexes and no
     * triangles.
     */
    static KEZVisSurfacePrimitive *CreatePlaneSurfacePrimitive(KEZMathSetOfPoints const &points,
                                                               KEZMathVector const &normal);

    /*!
     * A filled regular polygon: \a sides vertexes on the circle, vertex i
     * being corner i, and sides - 2 triangles in a fan from vertex 0,
     * (0, t + 1, t + 2). Every triangle has the normalised \a normal as its
     * normal. Two sides give two vertexes and no triangles.
     *
     * Throws KEZSysOutOfBoundsException below one side (see the class). One
     * side passes that check, and its triangle count of -1 makes the
     * allocation of the arrays throw std::bad_array_new_length, a
     * std::bad_alloc; that is deliberate and kept.
     */
    static KEZVisSurfacePrimitive *CreatePolygonPrimitive(KEZMathPoint const &origin, KEZMathVector const &normal,
                                                          double radius, int sides);

    /*!
     * The side wall of a regular prism, without caps: for each corner i,
     * vertex 2i on the circle round \a origin and vertex 2i + 1 on the circle
     * round \a origin + normalised \a axis * \a height. With n = 2 * sides,
     * triangle k is (k, (k + 1) mod n, (k + 2) mod n), a closed strip whose
     * winding alternates in space; the surface works out the normals.
     *
     * Throws KEZSysOutOfBoundsException below one side (see the class).
     */
    static KEZVisSurfacePrimitive *CreatePrismPrimitive(KEZMathPoint const &origin, KEZMathVector const &axis,
                                                        double radius, double height, int sides);

    /*!
     * The mantle of a regular pyramid, without a base: vertex 0 is the apex
     * \a origin + \a height * normalised \a axis, vertex i + 1 corner i of the
     * circle round \a origin. Triangles (0, k, k + 1) for k from 1 to
     * sides - 1, closed by (0, sides, 1); one side gives the degenerate
     * (0, 1, 1). The surface works out the normals.
     *
     * Throws KEZSysOutOfBoundsException below one side (see the class).
     */
    static KEZVisSurfacePrimitive *CreatePyramidPrimitive(KEZMathPoint const &origin, KEZMathVector const &axis,
                                                          double radius, double height, int sides);

    /*!
     * A latitude and longitude sphere round the z axis.
     *
     * With d = \a divisions, there are R = 2d - 1 rings of M = 4d points and
     * step = (pi / 2) / d. Vertex 0 is the north pole \a center + (0, 0, r),
     * vertex 1 the south pole \a center - (0, 0, r). Ring k, from the north,
     * lies at the polar angle a, which starts at step and grows by step from
     * ring to ring by running addition; on it, point j lies at the longitude
     * b, which starts at 0 on every ring and grows by step by running
     * addition. Vertex 2 + k M + j is
     * \a center + (sin(b) sin(a) r, cos(b) sin(a) r, cos(a) r): longitude 0
     * lies on +y and longitude grows towards +x. That makes
     * 8 d^2 - 4 d + 2 vertexes.
     *
     * Writing A(k, j) for vertex 2 + k M + (j mod M), with j - 1 wrapping to
     * M - 1 at j = 0, the triangles are, in this order: the north cap
     * (0, A(0, j - 1), A(0, j)) for each j; for each band k from 0 to R - 2
     * and each j, (A(k, j), A(k, j - 1), A(k + 1, j)) and then
     * (A(k + 1, j), A(k, j - 1), A(k + 1, j - 1)); the south cap
     * (1, A(R - 1, j), A(R - 1, j - 1)) for each j. Twice as many triangles as
     * ring vertexes. The surface works out the normals.
     *
     * A \a radius under 0.001, or a NaN radius, throws
     * KEZSysOutOfBoundsException with the radius as the value, 0.0 as the
     * lower limit, no upper limit and neither limit included. Then a
     * \a divisions below 1 throws KEZSysOutOfBoundsException with the count as
     * the value, 1 as the lower limit, no upper limit and both included. More
     * than 11585 divisions give more triangles than an int can number and
     * throw std::bad_array_new_length.
     */
    static KEZVisSurfacePrimitive *CreateSpherePrimitive(KEZMathPoint const &center, double radius, int divisions);

    /*!
     * A solid arrow from its absolute measures: one KEZVisRepGraphics of three
     * surfaces drawn with \a options, in this order: the shaft's wall,
     * CreatePrismPrimitive(\a start, d, \a shaftRadius, \a shaftLength,
     * \a sides); the disc that closes the shaft at \a start,
     * CreatePolygonPrimitive(\a start, d, \a shaftRadius, \a sides); the head,
     * CreatePyramidPrimitive(\a start + d * \a shaftLength, d, \a headRadius,
     * \a headLength, \a sides), with its apex at
     * \a start + d * (\a shaftLength + \a headLength). d is \a direction
     * normalised. A zero direction is not checked here: it stays zero, and
     * the shaft's circle then refuses it with
     * KEZMathZeroMagnitudeVectorException.
     *
     * On purpose there is no disc at the far end of the shaft and none under
     * the head.
     *
     * Below one side the shaft throws KEZSysOutOfBoundsException; with one
     * side the disc throws std::bad_array_new_length. Nothing leaks either way.
     */
    static KEZVisRep *CreateArrowRep(KEZMathPoint const &start, KEZMathVector const &direction, double shaftLength,
                                     double shaftRadius, double headLength, double headRadius, int sides,
                                     KEZVisOptions const &options);

    /*!
     * A solid arrow with measures in proportion to its \a length: the absolute
     * form with the shaft length \a length * \a shaftLengthRatio, the shaft
     * radius \a length * \a shaftRadiusRatio, the head length
     * (1.0 - \a shaftLengthRatio) * \a length and the head radius
     * \a length * \a headRadiusRatio. The whole arrow, from \a start to the
     * apex, is thus \a length long whatever the ratios.
     */
    static KEZVisRep *CreateArrowRep(KEZMathPoint const &start, KEZMathVector const &direction, double length,
                                     KEZVisOptions const &options, int sides, double shaftRadiusRatio,
                                     double headRadiusRatio, double shaftLengthRatio);

    /*!
     * An axis line: one KEZVisPolylinePrimitive of separate segments holding
     * the single segment from \a start to \a start + d * \a length, d being
     * \a direction normalised, drawn with \a options. A zero direction stays
     * zero, so both ends lie on \a start.
     */
    static KEZVisRepGraphics *CreateAxisRep(KEZMathPoint const &start, KEZMathVector const &direction, double length,
                                            KEZVisOptions const &options);

    /*!
     * An origin mark: one KEZVisPointPrimitive holding \a point, drawn with
     * \a options. The name keeps its historical spelling.
     */
    static KEZVisRepGraphics *CreateOirginRep(KEZMathPoint const &point, KEZVisOptions const &options);

    /*!
     * A polygon with holes as a triangle mesh. Unlike the shape operations
     * above, bad geometry never throws here: it gives null or less geometry.
     *
     * \a rings[0] is the outline, every further ring a candidate hole. A ring
     * need not be closed, and its orientation doesn't matter. The polygon must
     * lie in a plane of constant z: only x and y are triangulated, by a
     * constrained Delaunay triangulation.
     *
     * Null comes back for no rings, for fewer than three points in all
     * rings together, for a point whose z differs by more than 0.001 from the
     * z of the very first point, and for an outline that keeps fewer than
     * three points after cleaning.
     *
     * Cleaning, ring by ring:
     * - Points equal to the point before (KEZMathPoint::operator==, a
     *   distance of at most 1e-9) are dropped, a spike that returns to its
     *   start is removed, and a middle point of three on a line goes. The
     *   first and last points are not compared, so three points on a line
     *   across the seam stay.
     * - Then the ring is walked and cut at the first point that lies within
     *   0.001 in x and in y of a point taken before: a repeated first point
     *   closes the ring, and a ring that comes back to a point ends there;
     *   the rest of it is ignored.
     *
     * Holes: a ring of fewer than three points is ignored. A hole is left
     * out unless all of its points lie inside the outline or on it (a point
     * within 0.001 of an outline point or on an outline edge counts as on it)
     * and none of its edges meets an outline edge; touching counts as
     * meeting, so a hole that shares a point with the outline is left out.
     * Two holes whose edges cross are both left out; holes that only touch,
     * each staying on one side of the other, are both kept. Nothing reports
     * what was left out.
     *
     * The vertices: first the points kept of the outline, then those of every
     * hole that lies inside the outline, each with the z it came with, also
     * for holes left out later for crossing another hole. Triangle corners
     * lie at z = 0.0. A corner takes the vertex whose key is the same, the
     * key being QByteArray::number(v, 'f', 3) of x, y and z joined by commas
     * (the last vertex of that key among the points); a corner without one
     * becomes a new vertex at the end. So a polygon at z = 0 reuses its
     * points, points closer than 0.0005 may merge into one vertex, and a
     * polygon at another z (at three decimals; -0.0001 reads "-0.000") gets
     * all its corners as new vertices at z = 0, its own points staying in
     * the array unreferenced, where they still count for the bounding box.
     * This is deliberate and kept.
     *
     * Coordinates that are not finite follow the same rules in IEEE
     * arithmetic: such a point is never taken for near another, a hole point
     * with a NaN or an infinite y never passes the inside test of a finite
     * outline, and the triangulator makes no triangles of an outline with
     * one, so the surface then holds the vertices only. Such coordinates, and those beyond 1e150
     * in size, are checked against every edge, which is slow where there are
     * many of them.
     *
     * Where the triangulator stops on input it can't handle (edges of one
     * ring that cross each other), the triangles it made up to there, as far
     * as they are reachable from the outline's first edge, are the result,
     * possibly none.
     *
     * The triangulator works on the points scaled by a power of two into a
     * unit box. Where the extent in one direction dwarfs the other so much
     * that the scaled coordinates round to a line, or two distinct points
     * round to one (extents more than about 2^1000 apart), it makes no
     * triangles, and the surface holds the vertices only.
     *
     * The triangles are counter-clockwise seen from +z; the surface works out
     * the normals by its own rule. The caller owns the result. Null also
     * comes back where the counts could not be numbered by an int. Holds no
     * state and may run on any thread.
     *
     * Cost: about n log n for n points. The triangulator sweeps the points
     * in order of y and keeps its mesh Delaunay after every point. On an
     * outline that follows long smooth curves or long straight edges
     * sampled densely (an ellipse, an egg shape, a rectangle with many
     * points along its sides), every swept point would set off work in a
     * part of the mesh that grows with the input; the triangulator notices
     * that work outgrowing a budget linear in the points swept and builds
     * the same constrained Delaunay triangulation by inserting the points
     * in a spatially sorted random order instead (where four or more points
     * lie on one circle, the triangles chosen among them may differ, still
     * deterministically). If that fails (crossing edges), the sweep runs to
     * the end and its result, partial as described above, is given.
     */
    static KEZVisSurfacePrimitive *CreateFilledPolygonPrimitive(QList<KEZMathSetOfPoints> const &rings);

    /*!
     * A rep of CreateFilledPolygonPrimitive(\a rings), drawn with \a options;
     * null when that is null.
     *
     * With \a solid true the rep holds three surfaces: the base; the top cap,
     * which is the base with \a extrusion added to every z, with the same
     * triangles in the same order (the winding isn't turned); and the walls.
     * \a extrusion is ignored unless \a solid is true, and an extrusion of 0
     * still gives the three surfaces.
     *
     * The walls stand on every input ring in order, holes that were left out
     * included. Each ring is cleaned as above, but neither cut at a repeat
     * nor held to a minimum size. With b the number of wall vertices before
     * the ring, vertex b + 2j is its point j and b + 2j + 1 the same point
     * raised by \a extrusion; for j of 1 or more the triangles
     * (b+2j-2, b+2j-1, b+2j) and (b+2j, b+2j-1, b+2j+1) join it to the point
     * before, and at the last point (b, b+2j+1, b+1) and (b+2j, b+2j+1, b)
     * close the ring. A ring of one point adds two vertices and no triangles.
     * The walls keep the rings' z, so at a z other than 0 they stand apart
     * from the caps, which lie at 0 and \a extrusion; this is deliberate and
     * kept.
     */
    static KEZVisRep *CreateFilledPolygonRep(QList<KEZMathSetOfPoints> const &rings, KEZVisOptions const &options,
                                             double extrusion, bool solid);

    // -----------------------------------------------------------------------
    // Painting reps on a plane

    /*! Paints the list of the one \a rep with PaintReps(). */
    static void PaintRep(KEZMathPlane const &plane, QPainter *painter, KEZVisRep const *rep);

    /*!
     * Draws all primitives of all \a reps with \a painter, seen on \a plane:
     * each 3D point is projected to the plane's 2D coordinates, which go to
     * the painter as they stand. The set structure of the reps plays no part:
     * GetPrimitives() of each rep gives the primitives, and all of them are
     * drawn in one order of ascending KEZVisOptions::GetPriority(), so a
     * higher priority lands on top.
     *
     * The order is that of an in-place quicksort that is not stable, and it
     * decides ties: with i = low and j = high, the pivot is the key at
     * (i + j) / 2; while i <= j, i rises past keys below the pivot, j falls
     * past keys above it, and unless i > j the two elements change places and
     * i and j move one step on; then low to j and i to high are sorted the
     * same way. Three equal priorities thus swap the first and the last.
     *
     * Each primitive is drawn between QPainter::save() and
     * QPainter::restore(), so the caller's pen, brush and font survive, with
     * a pen made from its options: the painter's pen, with the dash pattern
     * of the options' line style (see below), not cosmetic, of width
     * GetLineThickness() / unitScale, where unitScale is the length of the
     * image of the unit x step under the painter's transform (a line keeps
     * its thickness in device units under any scale), and with the options'
     * colour on the pen's brush; the painter's font becomes the options'
     * font. The painter's brush is not touched. For every primitive the line
     * "  The painter brush color is: " with the painter brush's colour goes to
     * the debug log of the category "kez.visualization.painter" (enabled by
     * default; QT_LOGGING_RULES can switch it off).
     *
     * Dash patterns, in pen widths, by line style: 1 (3, 2); 2 (1, 2);
     * 3 (3, 2, 1, 2); 4 (5, 1, 3, 1); 5 (3, 2, 1, 2, 1, 2);
     * 6 (3, 2, 1, 2, 1, 2, 1, 2); 7 (3, 2, 3, 2, 1, 2, 1, 2);
     * 8 (5, 1, 5, 1, 3, 1); 9 (3, 2, 3, 2, 1, 2, 1, 2, 1, 2); 10 (7, 2, 1, 2);
     * 11 (7, 2, 1, 2, 1, 2); 12 (7, 2, 1, 2, 1, 2, 1, 2); 0 and all other
     * values solid.
     *
     * What is drawn, by the primitive's class:
     * - KEZVisPointPrimitive: its first point, once for each point it has,
     *   with one QPainter::drawPoints() call each; the other points are not
     *   shown, and the options' point symbol has no effect.
     * - KEZVisPolylinePrimitive of separate segments: the pairs (0, 1),
     *   (2, 3) and so on, each with its own QPainter::drawLines() call; a
     *   pair of equal points is skipped, a last odd point is unused.
     * - KEZVisPolylinePrimitive of one connected line: one
     *   QPainter::drawPolyline(), or, when the first and the last 2D point lie
     *   less than 0.001 apart in both x and y, one QPainter::drawPolygon()
     *   with Qt::OddEvenFill, which fills it with the painter's brush.
     * - KEZVisSurfacePrimitive and all its subclasses: nothing.
     * - KEZVisTextPrimitive: the text, in the rectangle of
     *   QFontMetrics::boundingRect() placed at the projected anchor (each
     *   coordinate truncated to int) by the anchor location; a location
     *   outside 0 to 8 leaves the rectangle where QFontMetrics put it. Where
     *   the painter's transform turns y over (m22 < 0) the text is drawn into
     *   a pixmap the size of the rectangle and that is drawn in its place, so
     *   that the text stays upright.
     * - anything else: nothing.
     *
     * The painter must be active; this neither begins nor ends it. A null
     * painter or one that is not active draws nothing and writes one warning
     * to the category "kez.visualization.painter". Null reps in the list are
     * skipped. Coordinates that are not finite or are huge are handed to the
     * painter as they are, which draws what it can of them; an anchor
     * position that is not a number is taken as 0 and one beyond
     * +-2^30 is clamped to that. A text whose rectangle is empty draws nothing,
     * and so does a text whose placed rectangle, mapped by the painter's
     * combined transform, is not finite or reaches beyond +-2^30 device
     * pixels (a transform that is not finite, as that of CreateImage() for a
     * model with NaN coordinates, or an absurdly large one): nothing of such
     * a text could be seen. The pixmap of upright text is drawn with
     * QPainter::SmoothPixmapTransform, which the painter's state after the
     * primitive no longer has: Qt's raster engine reads outside the pixmap
     * in its fast blit of some scales that turn y over.
     * A pen width from a singular transform (unitScale 0) is not guarded.
     * Under a painter transform with an entry that is not finite (as that
     * of CreateImage() for a model without extent, whose scale is infinite)
     * the primitives are gone through as above, each with its debug line, but
     * none is drawn: nothing could be seen, and Qt's dash stroker allocates
     * without bound under such a transform.
     */
    static void PaintReps(KEZMathPlane const &plane, QPainter *painter, QList<KEZVisRep const *> const &reps);

    /*!
     * Walks the tree of \a reps in list order. A KEZVisRepExtraSet saves the
     * painter, makes the painter's brush a solid one of the colour of its
     * extra options (writing "The fill color is: " with the colour to the
     * debug log of "kez.visualization.painter"), paints its children the same
     * way and restores the painter. Any other KEZVisRepSet paints its
     * children with the brush as it is. Every other rep is painted by itself
     * with PaintRep(), so priorities order primitives only within one leaf.
     * A solid fill thus reaches only closed polylines below an extra set.
     * A KEZVisRepTransformedGraphics is painted as the graphics rep it is:
     * its display transforms have no effect here.
     *
     * Null reps are skipped; a null or inactive painter draws nothing and
     * writes one warning, as PaintReps() does.
     */
    static void PaintRepsRecursively(KEZMathPlane const &plane, QPainter *painter,
                                     QList<KEZVisRep const *> const &reps);

    // -----------------------------------------------------------------------
    // Pictures

    /*!
     * The box of all non-null \a reps: the first one's
     * KEZVisRep::GetBoundingBox(), expanded by each further one. An empty
     * list, or one of nulls only, gives a default-constructed box.
     */
    static KEZMathBoundingBox CalculateRepesentationBoundingBox(QList<KEZVisRep const *> const &reps);

    /*!
     * The page rectangle of \a box for CreateSvgImage(), with y turned over
     * and a margin m of 0.02 times the box's width on all four sides: x is
     * lower x - m, y is -(delta y + (lower y - m) + 2m), the width delta x +
     * 2m and the height delta y + 2m, each truncated towards zero (also below
     * zero: 0.88 gives 0 and -0.5 gives 0). Values beyond +-2^30 are clamped
     * to that, and a value that is not a number gives 0. A box far out, with
     * x and width both 2^30, gives a rectangle whose right() is the largest
     * int; the same holds for y and the height.
     */
    static QRect CalculateViewBox(KEZMathBoundingBox const &box);

    /*!
     * A picture of \a reps of \a size, on a transparent background: \a color
     * is accepted and not used. The reps' box is fitted into the picture by
     * the smaller of the two scales width / delta x and height / delta y,
     * centred in the other direction, with y turned over: the world transform
     * is a translation by (-lower x, -upper y), the centring added to it, then
     * a scale by (s, -s). The reps are drawn with PaintReps() on the default
     * plane, so by priority and without the fills of extra sets. Text and
     * lines are antialiased.
     *
     * A size that is empty or negative gives a null QImage, with a warning.
     * An empty list gives a transparent picture of the size; so does a model
     * without extent (a zero delta) or with a box that is not finite: its
     * transform is not finite, and PaintReps() draws nothing through it. The picture is made through a QPixmap, so the call
     * needs a QGuiApplication and belongs on its thread; without one it
     * gives a null QImage, with a warning.
     */
    static QImage CreateImage(QSize const &size, QList<KEZVisRep const *> const &reps, QColor const &color);

    /*!
     * Writes \a reps as an SVG document to \a device through QSvgGenerator,
     * whose size is \a box's delta x by delta y (truncated) and whose view
     * box is \a viewBox; CalculateRepesentationBoundingBox() and
     * CalculateViewBox() make fitting ones. The reps are drawn with
     * PaintRepsRecursively() on the plane whose x direction is (1, 0, 0) and
     * y direction (0, -1, 0), so model y comes out negated, as the view box
     * expects, and extra sets fill their closed polylines. Antialiasing is
     * asked for before the painter begins, where it has no effect on the
     * output (Qt may warn of it).
     *
     * A null \a device writes nothing, with a warning. A device that cannot
     * be opened for writing, or is open read-only, makes QSvgGenerator
     * refuse to begin (with Qt's warning), and nothing is written.
     */
    static void CreateSvgImage(QList<KEZVisRep const *> const &reps, KEZMathBoundingBox const &box,
                               QRect const &viewBox, QIODevice *device);

    /*!
     * A point rep of topology vertices: one KEZVisRepGraphics holding one
     * KEZVisPointPrimitive with the point of each vertex, in the order of
     * \a vertices, drawn with \a options. An empty list is not special: it
     * gives a rep whose point primitive has no points.
     *
     * A null entry, or a vertex without a point (none was given, or it has
     * been deleted), cannot be shown and is left out; one warning per call in
     * the logging category "kez.visualization.topology" tells how many were
     * left out and the index of the first. The primitive then holds the points
     * of the other vertices, in their order. More points than an int can
     * count throw std::bad_array_new_length before anything is allocated.
     *
     * Never returns null; the caller owns the result. Holds no state and may
     * run on any thread, on data of its own.
     */
    static KEZVisRep *CreateRep(QList<KEZTopVertex const *> const &vertices, KEZVisOptions const &options);

    /*!
     * The rep of a topology body: a KEZVisRepSet of up to three
     * KEZVisRepGraphics children, always in this order whatever the order of
     * the flags in \a visible:
     *
     * 1. with KEZVisOptions::VisibleVertices, the point rep of the vertices
     *    (dimension 0) made by the overload above, drawn with
     *    \a vertexOptions;
     * 2. with KEZVisOptions::VisibleEdges, one KEZVisPolylinePrimitive for each
     *    edge (dimension 1), covering the whole curve of the edge (a default
     *    KEZGeoRangeOfCurve), drawn with \a edgeOptions;
     * 3. with KEZVisOptions::VisibleFaces, one KEZVisSurfacePrimitive for each
     *    face (dimension 2), read on demand from the face's surface, drawn with
     *    \a faceOptions. A face gives exactly one primitive: its surface is
     *    not split by loops or trims here.
     *
     * Each kind is asked of the body with KEZTopBody::GetEntitiesOfDimension
     * only when its flag is set, so a body is never queried for a dimension
     * that was not asked for; other bits of \a visible are ignored. The
     * primitives keep the order in which the body lists its entities. Entries
     * of other classes than the one of their dimension (told apart with
     * QMetaObject::cast) are skipped silently. A kind that has nothing to
     * show gives no child rather than an empty one, and with nothing to show
     * at all the result is an empty set; it is never null.
     *
     * The curves and surfaces are not copied: the primitives read them on
     * demand and have nothing more to tell of a curve or surface once it has
     * been deleted, so the body's geometry should outlive the rep. Each
     * polyline holds a reference on its curve (KEZGeoGeometry::AddReference)
     * for as long as it lives.
     *
     * Bad input does not crash. A null \a body gives an empty set and a
     * warning. A null entry in what the body lists, a vertex without a point
     * and an edge without a curve (never given, or deleted since) are
     * skipped; a face without a surface gives, like every face, its surface
     * primitive, an empty one. A call writes at most one warning for each
     * dimension and each of these two reasons, telling how many entries were
     * skipped and the index of the first in the body's list. The warnings go
     * to the logging category "kez.visualization.topology".
     *
     * An exception thrown while a primitive is made (by a curve or a surface
     * of the body, for instance) reaches the caller unchanged; everything
     * made before it is freed again.
     *
     * The caller owns the result. Holds no state and may run on any thread, on
     * data of its own.
     */
    static KEZVisRep *CreateRep(KEZTopBody const *body, KEZVisOptions const &vertexOptions,
                                KEZVisOptions const &edgeOptions, KEZVisOptions const &faceOptions,
                                QFlags<KEZVisOptions::VisibleGeometry> const &visible);
};

#endif // KEZVISREPFACTORY_H
