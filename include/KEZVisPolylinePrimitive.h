#ifndef KEZVISPOLYLINEPRIMITIVE_H
#define KEZVISPOLYLINEPRIMITIVE_H

#include "KEZVisPrimitive.h"
#include "kezvisualization_export.h"

#include "KEZMathSetOfPoints.h"

#include <QMetaType>

#include <vector>

QT_BEGIN_NAMESPACE
class QDataStream;
QT_END_NAMESPACE

class KEZGeoCurve;
class KEZGeoRangeOfCurve;
class KEZVisPolylinePrimitivePrivate;

/*!
 * \class KEZVisPolylinePrimitive
 * \brief A line through a list of points, or along a stretch of a curve.
 *
 * A polyline holds either explicit coordinates (one flat array of doubles,
 * x, y, z of one point after the other, owned by the polyline) or a curve and
 * a valid KEZGeoRangeOfCurve on it. Which of the two is decided by the range
 * alone: while the range is valid, the coordinates are fetched from the curve
 * at every call of the two getters, and no copy of the vertices is kept.
 *
 * A curve-based polyline holds a reference on its curve
 * (KEZGeoGeometry::AddReference() when it takes the curve,
 * RemoveReference() when it lets go) and watches it: when the curve is
 * deleted first, the polyline notices, never touches it again, and its two
 * coordinate getters answer from the explicit coordinates from then on: empty
 * lists, unless operator>>() has read points into the polyline.
 * GetNumPoints() and GetBoundingBox() keep what they were. The range must lie
 * on the curve given to the constructor.
 *
 * The type and its Structure are registered with Qt's meta-type system as
 * "KEZVisPolylinePrimitive" and "KEZVisPolylinePrimitive::Structure" when the
 * library is loaded.
 */
class KEZVISUALIZATION_EXPORT KEZVisPolylinePrimitive : public KEZVisPrimitive
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZVisPolylinePrimitive)

public:
    /*!
     * How the points are joined. Int-sized: a value read from a stream is
     * kept as it is, also when it is none of the two below.
     */
    enum Structure : int {
        StructureSeparateSegments = 0, ///< points taken in pairs, each pair one segment
        StructureConnected = 1         ///< the points form one connected line
    };
    Q_ENUM(Structure)

    /*! An empty polyline: no points, StructureConnected, default box. */
    KEZVisPolylinePrimitive();

    /*!
     * Exists for the meta-type system only and deliberately copies nothing:
     * the result is an empty polyline, as from the default constructor.
     */
    KEZVisPolylinePrimitive(const KEZVisPolylinePrimitive &other);

    /*! Copies the points in the order of the set and stores the structure. */
    KEZVisPolylinePrimitive(const KEZMathSetOfPoints &points, Structure structure);

    /*!
     * Takes ownership of \a coords, which holds x, y, z of \a numPoints
     * points and must come from array \c new; nothing is copied. A negative
     * \a numPoints, or a null \a coords, gives a polyline without points (a
     * non-null array is still taken and freed). One point is allowed.
     */
    KEZVisPolylinePrimitive(double *coords, int numPoints, Structure structure);

    /*!
     * A polyline along \a range of \a curve, with StructureConnected. The
     * curve is not copied; it gains a reference for as long as the polyline
     * holds it. \a curve must not be null.
     *
     * With an invalid range the polyline covers the whole curve: it has as
     * many points as the curve has vertices, one more when the curve is
     * closed, and the curve's own box. Its range is then built from two
     * locations that are both KEZGeoCurve::GetLocation(0); that sameness marks
     * a whole curve.
     *
     * With a valid range from location s to location e, the count is
     * e's segment - s's segment + 2, where e's segment is taken plus the
     * curve's segment count when s lies beyond e (a range across the seam of
     * a closed curve); one less when s is at the end of its segment, one less
     * when e is at the start of its segment. Fewer than 2 points throw
     * KEZSysException("polyline contains less than 2 points"); the reference
     * on the curve is released before the exception leaves. Otherwise the box
     * is the box of the points that GetCoordsAsDouble() yields.
     */
    KEZVisPolylinePrimitive(const KEZGeoCurve *curve, const KEZGeoRangeOfCurve &range);

    ~KEZVisPolylinePrimitive() override;

    /*! The stored box; the options are ignored. */
    KEZMathBoundingBox GetBoundingBox(const KEZVisOptions &options) const override;

    /*!
     * The coordinates, 3 x GetNumPoints() values, copied in one move from the
     * explicit array. Along a range: the point of the start location, then the
     * curve's vertices after it (wrapping round to vertex 0 on a closed curve),
     * and last the point of the end location. On a whole curve: every vertex
     * from vertex 0, and vertex 0 once more at the end of a closed curve.
     * Empty when there are no coordinates, such as once the curve has gone.
     */
    std::vector<double> GetCoordsAsDouble() const;

    /*!
     * The coordinates narrowed to float, 3 x GetNumPoints() values. For
     * explicit coordinates this is GetCoordsAsDouble() narrowed.
     *
     * Along a curve it is a routine of its own, deliberately not the narrowed
     * double list: the first place is the start location and the last the end
     * location, and the vertices between run from the one after the start up
     * to, but not including, the index GetNumPoints() - 2 (an index that does
     * not move with the start). There is no whole-curve case: on a whole curve
     * the list ends on the start location, and the places between the last
     * vertex written and the end stay (0, 0, 0). Callers that take floats
     * depend on this shape of the list, so it stays so.
     */
    std::vector<float> GetCoordsAsFloat() const;

    /*! The number of points that GetCoordsAsDouble() yields. */
    int GetNumPoints() const;

    /*! How the points are joined. */
    Structure GetStructure() const;

protected:
    /*!
     * Lets a subclass bring a record derived from
     * KEZVisPolylinePrimitivePrivate; the polyline takes ownership of it.
     */
    explicit KEZVisPolylinePrimitive(KEZVisPolylinePrimitivePrivate *d);

    KEZVisPolylinePrimitivePrivate *d_ptr;

private:
    KEZVisPolylinePrimitive &operator=(const KEZVisPolylinePrimitive &) = delete;

    friend KEZVISUALIZATION_EXPORT QDataStream &operator<<(QDataStream &stream,
                                                           const KEZVisPolylinePrimitive &polyline);
    friend KEZVISUALIZATION_EXPORT QDataStream &operator>>(QDataStream &stream,
                                                           KEZVisPolylinePrimitive &polyline);
};

Q_DECLARE_METATYPE(KEZVisPolylinePrimitive)

/*!
 * Writes, with no header: the structure as qint32, the number of points as
 * qint64 (the size of the GetCoordsAsDouble() list divided by 3), then x, y, z
 * of each point as doubles. A curve-based polyline is thus written as plain
 * points. Byte order and floating-point precision are the stream's.
 *
 * operator>>() deliberately reads the count narrower than it is written here;
 * see there.
 */
KEZVISUALIZATION_EXPORT QDataStream &operator<<(QDataStream &stream, const KEZVisPolylinePrimitive &polyline);

/*!
 * Reads the structure as qint32, then the number of points as qint32 -
 * deliberately narrower than the qint64 that operator<<() writes, so the two
 * are not inverses: on a big-endian stream (Qt's default) a written polyline
 * reads back with the upper half of the count, 0 for any real polyline, and
 * the lower half stays in the stream for whatever is read next. The
 * mismatch is kept on purpose: the rep stream's behaviour rests on it, and no
 * reader of the stream may assume the two agree. Then x, y, z
 * of that many points go into a new coordinate array that replaces the old
 * one, and the box is recomputed. The range and curve stay as they were, so a
 * curve-based polyline goes on answering from its curve.
 *
 * Bad input: memory grows with the bytes that the stream actually delivers,
 * never with the count alone. A negative count sets the status
 * QDataStream::ReadCorruptData. When the stream fails while reading (a short
 * stream gives QDataStream::ReadPastEnd) the polyline is left without points,
 * with the default box, and its structure as it was. As with Qt's own
 * container readers, the reading is judged on its own: a failure status that
 * the stream had before is set again afterwards.
 */
KEZVISUALIZATION_EXPORT QDataStream &operator>>(QDataStream &stream, KEZVisPolylinePrimitive &polyline);

#endif // KEZVISPOLYLINEPRIMITIVE_H
