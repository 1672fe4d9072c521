#ifndef KEZSYSJSONCONVERTERS_H
#define KEZSYSJSONCONVERTERS_H

#include "KEZSysColorHash.h"
#include "kezsystem_export.h"

#include <QColor>
#include <QJsonValue>

/*!
    Conversions between values and their JSON form. All operations are static.

    The JSON form of a colour is an object whose key "model" names the colour
    model, with one key per component beside it:

    | QColor model  | "model"        | component keys        |
    |---------------|---------------|-----------------------|
    | Invalid       | "invalid"     | none                  |
    | Rgb           | "rgb"         | "r", "g", "b", "a"    |
    | Hsv           | "hsv"         | "h", "s", "v", "a"    |
    | Hsl           | "hsl"         | "h", "s", "l", "a"    |
    | Cmyk          | "cmyk"        | "c", "m", "y", "k", "a" |
    | ExtendedRgb   | "extendedRgb" | "r", "g", "b", "a"    |

    QColor keeps each component as a 16-bit word, and the form writes it exactly:
    - a hue "h" in degrees, as QColor keeps it to a hundredth of a degree, from 0
      up to and including 360, or -1 for an achromatic colour;
    - every other component of the first four models as a number from 0 to 1, the
      word divided by 65535;
    - the components of an extended RGB colour (a half-precision float each) as
      the numbers they are, which may lie outside 0..1.
    A reader takes word = round(value * 65535) (hue: round(value * 100)), so a
    colour comes back exactly as it was written: Convert(Convert(c), d) gives
    d == c for every colour that QColor's API makes, the invalid QColor()
    included, and keeps its colour model. An infinite or NaN component of an extended
    colour survives in the QJsonValue, but JSON text cannot carry it (it is
    written as null), and a null component reads as no colour.

    Examples: QColor(255, 0, 0) is {"model": "rgb", "r": 1, "g": 0, "b": 0, "a": 1};
    QColor() is {"model": "invalid"}.

    For documents written by hand the reader also accepts an array of three or
    four integers from 0 to 255, [r, g, b] or [r, g, b, a], as QColor(r, g, b, a)
    with alpha 255 when it is missing. The writer never produces it.
*/
class KEZSYSTEM_EXPORT KEZSysJsonConverters
{
public:
    //! The JSON form of the colour described above.
    static QJsonValue Convert(const QColor &color);

    /*!
        Reads a colour from its JSON form into \a color and answers true.

        Answers false, and leaves \a color untouched, when the value is no
        colour: not an object or array (a number, a string, null), an array of
        another size than 3 or 4 or with an element that is no integer from 0 to
        255, an object without a known "model", or an object with a component
        missing, not a number, or out of its range.
    */
    static bool Convert(const QJsonValue &value, QColor &color);
};

#endif // KEZSYSJSONCONVERTERS_H
