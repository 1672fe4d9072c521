#ifndef KEZVISARROWREP_H
#define KEZVISARROWREP_H

#include "KEZVisOptions.h"
#include "KEZVisRepGraphics.h"
#include "kezvisualization_export.h"

#include <KEZMathPoint.h>
#include <KEZMathVector.h>

/*!
 * A ready-made solid arrow as a rep: a round shaft, a disc that closes its
 * foot and a conical head, all three with the same number of sides and drawn
 * with one options entry.
 *
 * The arrow exists only as the three primitives that the constructor hands to
 * KEZVisRepGraphics, in this order: a KEZVisPrismPrimitive for the shaft's
 * wall, a KEZVisPolygonPrimitive for the disc at the start, and a
 * KEZVisPyramidPrimitive for the head. The class adds no data, signals or
 * operations of its own, so RemovePrimitive() and SetColor() work on it as on
 * any graphics rep.
 *
 * On purpose there is no disc at the far end of the shaft and none under the
 * head: the shaft's wall runs into the open base of the cone.
 *
 * The three shapes keep their geometry in arrays of their own (see
 * KEZVisPrismPrimitive), so GetBoundingBox() answers the default box and
 * Save() writes three surfaces with no vertexes and no triangles.
 *
 * KEZVisRepFactory::CreateArrowRep() builds the same arrow from plain surface
 * primitives instead.
 */
class KEZVISUALIZATION_EXPORT KEZVisArrowRep : public KEZVisRepGraphics
{
    Q_OBJECT

public:
    /*!
     * The absolute form. With d the normalised \a direction: the shaft is a
     * prism from \a start
     * along d with \a shaftRadius and \a shaftLength; the disc a polygon at
     * \a start round d with \a shaftRadius; the head a pyramid standing on
     * \a start + d * \a shaftLength along d, with \a headRadius and
     * \a headLength, so that its apex lies at
     * \a start + d * (\a shaftLength + \a headLength).
     *
     * Below one side the shaft throws KEZSysOutOfBoundsException (value
     * \a sides, lower limit 1, no upper limit, both included); with one side
     * the disc throws std::bad_array_new_length, as KEZVisPolygonPrimitive
     * does. A zero \a direction is not checked here: it stays zero, and the
     * shaft's circle refuses it with KEZMathZeroMagnitudeVectorException.
     * Nothing leaks in any of these cases.
     */
    KEZVisArrowRep(const KEZMathPoint &start, const KEZMathVector &direction, double shaftLength,
                   double shaftRadius, double headLength, double headRadius, int sides,
                   const KEZVisOptions &options);

    /*!
     * The proportional form: the absolute form with the shaft length
     * \a length * \a shaftLengthRatio, the shaft radius
     * \a length * \a shaftRadiusRatio, the head length
     * (1.0 - \a shaftLengthRatio) * \a length and the head radius
     * \a length * \a headRadiusRatio. Shaft and head together are thus always
     * \a length long.
     */
    KEZVisArrowRep(const KEZMathPoint &start, const KEZMathVector &direction, double length,
                   const KEZVisOptions &options, int sides, double shaftRadiusRatio, double headRadiusRatio,
                   double shaftLengthRatio);

    ~KEZVisArrowRep() override;
};

#endif // KEZVISARROWREP_H
