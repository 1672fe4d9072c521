#ifndef KEZVISSURFACEPRIMITIVE_H
#define KEZVISSURFACEPRIMITIVE_H

#include "KEZVisPrimitive.h"
#include "kezvisualization_export.h"

#include <QList>
#include <QMetaType>

QT_BEGIN_NAMESPACE
class QDataStream;
QT_END_NAMESPACE

class KEZGeoSurface;
class KEZVisSurfacePrimitivePrivate;

/*!
 * \class KEZVisSurfacePrimitive
 * \brief A triangle mesh for display, with one normal per triangle.
 *
 * The mesh is either held in flat arrays owned by the primitive (vertex
 * coordinates, three zero-based vertex indexes per triangle, a normal per
 * triangle), or read on demand from a KEZGeoSurface that the primitive
 * watches but does not own and holds no reference on. Every list getter first
 * asks whether the surface is set and still alive and reads from it if so;
 * otherwise it answers from the arrays. A primitive built from a surface has
 * no arrays, so once its surface has gone its lists are empty while its counts
 * and box stay as they were. Keeping the surface alive is the caller's duty.
 *
 * The normal rule: the normal of triangle (a, b, c), with pa, pb, pc its
 * points, is ((pc - pa) ^ (pb - pa)).Normalized(). The operands stand in this
 * order on purpose, so the normal points against the usual right-handed sense
 * of a, b, c: a mesh meant to face the viewer lists its corners accordingly.
 * A degenerate triangle has the zero normal (Normalized() leaves a vector
 * without magnitude as it is), and so has a triangle with an index outside the
 * vertex range.
 *
 * GetTriangleVertexIndexes() answers QList<long> on every platform, also
 * where long is 64 bits wide; the values always fit 32 bits.
 *
 * Subclasses (polygons, prisms, pyramids) keep arrays of their own and
 * override the virtual getters; the part of the data held here then stays
 * empty, and the stream form writes two zero counts for them.
 *
 * Registered with Qt's meta-type system as "KEZVisSurfacePrimitive" when the
 * library is loaded.
 */
class KEZVISUALIZATION_EXPORT KEZVisSurfacePrimitive : public KEZVisPrimitive
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZVisSurfacePrimitive)

public:
    /*! An empty mesh: no vertices, no triangles, the default box. */
    KEZVisSurfacePrimitive();

    /*!
     * Exists for the meta-type system only and deliberately copies nothing:
     * the result is an empty primitive.
     */
    KEZVisSurfacePrimitive(const KEZVisSurfacePrimitive &other);

    /*!
     * Takes ownership of the three arrays, which must come from array \c new
     * and are freed with \c delete[] together with the primitive; nothing is
     * copied. \a vertexCoords holds 3 x \a numVertexes values,
     * \a triangleVertexes and \a triangleNormals 3 x \a numTriangles.
     *
     * When \a triangleNormals is null the normals are computed with the normal
     * rule; given normals are kept as they are, not normalised. The box is
     * computed from the vertices at once.
     *
     * A negative count, or a null array where values are expected, counts as
     * no vertices (or no triangles); arrays given are still taken and freed.
     */
    KEZVisSurfacePrimitive(int numVertexes, double *vertexCoords, int numTriangles, int *triangleVertexes,
                           double *triangleNormals);

    /*!
     * A mesh read on demand from \a surface, which must stay alive as long as
     * the primitive answers from it. The counts and the box are taken from the
     * surface now; no copy of the mesh is kept. A null \a surface gives an
     * empty primitive. An exception of the surface's queries reaches the
     * caller unchanged, and nothing of the primitive is left behind.
     */
    explicit KEZVisSurfacePrimitive(const KEZGeoSurface *surface);

    ~KEZVisSurfacePrimitive() override;

    /*!
     * The box of the vertices; the options are ignored. Computed when first
     * needed if it has not been yet; a mesh without vertices has the default
     * box.
     */
    KEZMathBoundingBox GetBoundingBox(const KEZVisOptions &options) const override;

    /*! The number of triangles. */
    virtual int GetNumTriangles() const;

    /*! The number of vertices. */
    virtual int GetNumVertexes() const;

    /*!
     * GetVertexCoordinatesAsDouble() narrowed value by value. It calls the
     * virtual double getter, so it serves subclasses as well.
     */
    virtual QList<float> GetVertexCoordinatesAsFloat() const;

    /*! x, y, z of each vertex; a copy of the array made in one move. */
    virtual QList<double> GetVertexCoordinatesAsDouble() const;

    /*! Three zero-based vertex indexes per triangle, as given or as read. */
    virtual QList<long> GetTriangleVertexIndexes() const;

    /*!
     * x, y, z of the normal of each triangle. From a surface: its
     * KEZGeoSurface::GetNormal(), normalised. From arrays: a copy of the normal
     * array, computed or given.
     */
    virtual QList<double> GetTriangleNormalCoordsAsDouble() const;

    /*!
     * x, y, z of the normal of each triangle, as float. From a surface:
     * KEZGeoSurface::GetNormal() narrowed and deliberately not normalised, so
     * it differs from the double list in length. From arrays: the normal array
     * narrowed.
     */
    virtual QList<float> GetTriangleNormalCoordsAsFloat() const;

    /*! Normals per vertex; always empty here. Subclasses that have them override it. */
    virtual QList<double> GetVertexNormalCoordsAsDouble() const;

protected:
    /*!
     * Lets a subclass bring a record derived from
     * KEZVisSurfacePrimitivePrivate; the primitive takes ownership of it. The
     * record's mesh part starts empty.
     */
    explicit KEZVisSurfacePrimitive(KEZVisSurfacePrimitivePrivate *d);

    KEZVisSurfacePrimitivePrivate *d_ptr;

private:
    KEZVisSurfacePrimitive &operator=(const KEZVisSurfacePrimitive &) = delete;

    friend KEZVISUALIZATION_EXPORT QDataStream &operator<<(QDataStream &stream,
                                                           const KEZVisSurfacePrimitive &surface);
    friend KEZVISUALIZATION_EXPORT QDataStream &operator>>(QDataStream &stream,
                                                           KEZVisSurfacePrimitive &surface);
};

Q_DECLARE_METATYPE(KEZVisSurfacePrimitive)

/*!
 * Writes, with no header, the mesh held in this class's own data: the vertex
 * count and the triangle count as qint32, then x, y, z of each vertex as
 * doubles, then a, b, c of each triangle as qint32. Normals are not written.
 * Subclasses that keep arrays of their own are written with two zero counts.
 * Byte order and floating-point precision are the stream's.
 *
 * A primitive built from a surface has no arrays: while the surface is alive
 * its mesh is written from the surface, in the same form; once the surface
 * has gone, two zero counts are written.
 */
KEZVISUALIZATION_EXPORT QDataStream &operator<<(QDataStream &stream, const KEZVisSurfacePrimitive &surface);

/*!
 * Reads the form that operator<<() writes. The new vertex and index arrays
 * replace the old ones; the normals are computed with the normal rule,
 * whatever normals the saved primitive had; the box is recomputed. A surface
 * that the primitive was built from stays set, so a primitive with a live
 * surface goes on answering from it.
 *
 * Bad input: memory grows with the bytes that the stream actually delivers,
 * never with the counts alone. A negative count, or a vertex index outside the
 * vertex range, sets the status QDataStream::ReadCorruptData. When reading
 * fails for any reason (a short stream gives QDataStream::ReadPastEnd) the
 * primitive is left empty: no vertices, no triangles, the default box. As with
 * Qt's own container readers, the reading is judged on its own: a failure
 * status that the stream had before is set again afterwards.
 */
KEZVISUALIZATION_EXPORT QDataStream &operator>>(QDataStream &stream, KEZVisSurfacePrimitive &surface);

#endif // KEZVISSURFACEPRIMITIVE_H
