#ifndef KEZVISPRIMITIVE_H
#define KEZVISPRIMITIVE_H

#include "kezvisualization_export.h"

#include "KEZMathBoundingBox.h"

#include <QObject>

class KEZVisOptions;

/*!
 * \class KEZVisPrimitive
 * \brief Base of every displayable piece of geometry: points, polylines,
 * triangle meshes and text.
 *
 * A primitive is built once and then asked for its coordinates; reps
 * (KEZVisRepGraphics) keep it beside the KEZVisOptions that say how it looks.
 * A primitive never has a QObject parent: the rep that it is given to owns it
 * and deletes it.
 *
 * The base holds no data of its own. Each subclass keeps its state in a
 * private record of its own behind its own \c d_ptr, and offers a protected
 * constructor that takes such a record so that its own subclasses can bring a
 * derived one.
 */
class KEZVISUALIZATION_EXPORT KEZVisPrimitive : public QObject
{
    Q_OBJECT

public:
    /*! A primitive without a parent; primitives never take one. */
    KEZVisPrimitive();
    ~KEZVisPrimitive() override;

    /*!
     * The axis-aligned box around the primitive. The options take part
     * because the box of a text depends on its font; points, lines and
     * meshes ignore them.
     */
    virtual KEZMathBoundingBox GetBoundingBox(const KEZVisOptions &options) const = 0;

private:
    Q_DISABLE_COPY(KEZVisPrimitive)
};

#endif // KEZVISPRIMITIVE_H
