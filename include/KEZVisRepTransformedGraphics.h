#ifndef KEZVISREPTRANSFORMEDGRAPHICS_H
#define KEZVISREPTRANSFORMEDGRAPHICS_H

#include "KEZVisRepGraphics.h"
#include "KEZVisTransform.h"
#include "kezvisualization_export.h"

class KEZVisRepTransformedGraphicsPrivate;

/*!
 * \class KEZVisRepTransformedGraphics
 * \brief A graphics rep with a display transform for each primitive.
 *
 * The transforms are for the clients, which ask for them with the three-list
 * GetPrimitives(); the library never applies them. Everybody else sees a
 * plain KEZVisRepGraphics: the two-list GetPrimitives(), Save() and Load()
 * are inherited unchanged, so the transforms are not saved, a transformed rep
 * comes back from a stream as a plain graphics rep's data without them, and
 * the 2D painter draws it as if it had none.
 *
 * The transform list may be shorter than the primitives, as the options list
 * may: primitive i gets transform i when there is one and transform 0
 * otherwise. A rep with primitives and no transform at all has no transform
 * to hand out; the three-list GetPrimitives() then appends default transforms
 * (see there).
 */
class KEZVISUALIZATION_EXPORT KEZVisRepTransformedGraphics : public KEZVisRepGraphics
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZVisRepTransformedGraphics)

public:
    /*!
     * Takes over the primitives and shares the two lists. The lists are taken
     * by non-const reference; nothing is written to them.
     */
    KEZVisRepTransformedGraphics(const QList<const KEZVisPrimitive *> &primitives, QList<KEZVisOptions> &options,
                                 QList<KEZVisTransform> &transforms);

    /*!
     * Takes over the primitives; the one options entry and the one transform
     * serve all of them. \a transform is taken by non-const reference and
     * left as it is.
     */
    KEZVisRepTransformedGraphics(const QList<const KEZVisPrimitive *> &primitives, const KEZVisOptions &options,
                                 KEZVisTransform &transform);

    ~KEZVisRepTransformedGraphics() override;

    using KEZVisRepGraphics::GetPrimitives;

    /*!
     * Appends what the two-list GetPrimitives() appends, then for primitive i
     * transform i if there is one, else transform 0. The output lists are
     * appended to and never cleared.
     *
     * A rep built with an empty transform list has no transform 0: each of its
     * primitives then gets a default-constructed transform, rather than a read
     * past the end of the list.
     */
    virtual void GetPrimitives(QList<const KEZVisPrimitive *> &primitives, QList<KEZVisOptions> &options,
                               QList<KEZVisTransform> &transforms) const;

private:
    Q_DISABLE_COPY(KEZVisRepTransformedGraphics)
};

#endif // KEZVISREPTRANSFORMEDGRAPHICS_H
