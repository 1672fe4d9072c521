#ifndef TESTPRIMITIVES_H
#define TESTPRIMITIVES_H

// Small primitives for the rep tests, and the lists that a rep answers.

#include "KEZVisOptions.h"
#include "KEZVisPointPrimitive.h"
#include "KEZVisPrimitive.h"
#include "KEZVisRep.h"

#include "KEZMathBoundingBox.h"

#include <QList>

// A primitive whose box is the cube [p, p + 1] around a given corner, shifted
// along x by the priority of the options that it is asked with, and which
// records the options of every call.
class OptionsBoxPrimitive : public KEZVisPrimitive
{
public:
    OptionsBoxPrimitive(double x, double y, double z)
        : m_x(x), m_y(y), m_z(z)
    {
    }

    KEZMathBoundingBox GetBoundingBox(const KEZVisOptions &options) const override
    {
        asked.append(options);
        const double x = m_x + options.GetPriority();
        return KEZMathBoundingBox(KEZMathPoint(x, m_y, m_z), KEZMathPoint(x + 1.0, m_y + 1.0, m_z + 1.0));
    }

    mutable QList<KEZVisOptions> asked;

private:
    double m_x;
    double m_y;
    double m_z;
};

// A point primitive at one point.
inline KEZVisPointPrimitive *newPoint(double x, double y, double z)
{
    return new KEZVisPointPrimitive(new double[3]{x, y, z}, 1);
}

inline KEZVisOptions optionsWithPriority(int priority)
{
    KEZVisOptions options;
    options.SetPriority(priority);
    return options;
}

// The primitives and options that a rep answers, asked once.
struct PrimitiveLists
{
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
};

inline PrimitiveLists AskPrimitives(const KEZVisRep &rep)
{
    PrimitiveLists lists;
    rep.GetPrimitives(lists.primitives, lists.options);
    return lists;
}

#endif // TESTPRIMITIVES_H
