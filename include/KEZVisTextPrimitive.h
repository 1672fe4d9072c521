#ifndef KEZVISTEXTPRIMITIVE_H
#define KEZVISTEXTPRIMITIVE_H

#include "KEZVisPrimitive.h"
#include "kezvisualization_export.h"

#include "KEZMathPoint.h"

#include <QString>

class KEZVisTextPrimitivePrivate;

/*!
 * \class KEZVisTextPrimitive
 * \brief A string anchored at a point in space, drawn in the font of its
 * options.
 *
 * The text primitive has no stream form: a rep's stream writes it as a bare
 * tag, and it does not come back on loading. It is the one primitive whose
 * bounding box depends on the options, because the box is measured with the
 * options' font; see GetBoundingBox().
 *
 * Nothing in the library builds text primitives: they are for the
 * application. KEZVisRepFactory::PaintReps() draws them.
 */
class KEZVISUALIZATION_EXPORT KEZVisTextPrimitive : public KEZVisPrimitive
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZVisTextPrimitive)

public:
    /*!
     * Which point of the text box sits on the anchor. The nine positions are
     * counted column by column: left column bottom, middle, top; then the
     * centre column; then the right column.
     */
    enum AnchorLocation : int {
        AnchorBottomLeft = 0,  ///< left column, bottom row
        AnchorLeft = 1,        ///< left column, middle row
        AnchorTopLeft = 2,     ///< left column, top row
        AnchorBottom = 3,      ///< centre column, bottom row
        AnchorCenter = 4,      ///< centre column, middle row
        AnchorTop = 5,         ///< centre column, top row
        AnchorBottomRight = 6, ///< right column, bottom row
        AnchorRight = 7,       ///< right column, middle row
        AnchorTopRight = 8     ///< right column, top row
    };
    Q_ENUM(AnchorLocation)

    /*!
     * How a viewer should treat the size of the text as the view zooms. The
     * library only stores and hands back this value; no code of the library
     * reads it. Int-sized: any other value is kept as it is.
     */
    enum Scalability : int {
        ScalabilityFixedSize = 0, ///< the text keeps its size on the screen
        ScalabilityScalable = 1   ///< the text grows and shrinks with the model
    };
    Q_ENUM(Scalability)

    /*!
     * A text \a text anchored at \a anchor with the point \a anchorLocation
     * of its box, and \a scalability kept for the clients. Values outside
     * the enumerations are stored as they are.
     */
    KEZVisTextPrimitive(const QString &text, const KEZMathPoint &anchor, AnchorLocation anchorLocation,
                        Scalability scalability);

    ~KEZVisTextPrimitive() override;

    /*! The text. */
    QString GetText() const;

    /*! The point where the text is anchored. */
    KEZMathPoint GetAnchor() const;

    /*! Which point of the text box sits on the anchor. */
    AnchorLocation GetAnchorLocation() const;

    /*! The scalability, as given. */
    Scalability GetScalability() const;

    /*!
     * The box of the text in the plane z = anchor's z, measured in the font of
     * \a options with font units taken as world units (the box knows nothing
     * of any view scale).
     *
     * The rectangle r = QFontMetrics(font).boundingRect(text), of width w and
     * height h, is moved with QRect::moveTo(x, y), both truncated towards zero
     * to int. With X, Y the anchor's coordinates, y is Y + h for the bottom
     * row (locations 0, 3, 6), Y + h / 2 for the middle row (1, 4, 7) and Y
     * for the top row (2, 5, 8); x is X for the left column, X - w / 2 for the
     * centre column and X - w for the right one. The box is worked out with y
     * pointing up, and the bottom row adds h rather than subtracting it; this
     * is deliberate and kept. A location outside 0 to 8 leaves r where
     * QFontMetrics put it, whatever the anchor. A NaN position counts as 0,
     * and positions beyond 2^30 in size are clamped to +-2^30, where a plain
     * conversion to int would be undefined.
     *
     * The result is the box from (r.left(), r.bottom(), Z) expanded by
     * (r.right(), r.top(), Z), Z being the anchor's z; QRect's bottom is
     * top + height - 1. An empty text gives an empty rectangle, so the box
     * collapses near the anchor.
     */
    KEZMathBoundingBox GetBoundingBox(const KEZVisOptions &options) const override;

protected:
    /*!
     * Lets a subclass bring a record derived from KEZVisTextPrimitivePrivate;
     * the primitive takes ownership of it.
     */
    explicit KEZVisTextPrimitive(KEZVisTextPrimitivePrivate *d);

    KEZVisTextPrimitivePrivate *d_ptr;

private:
    Q_DISABLE_COPY(KEZVisTextPrimitive)
};

#endif // KEZVISTEXTPRIMITIVE_H
