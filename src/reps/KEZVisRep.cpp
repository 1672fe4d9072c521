#include "KEZVisRep.h"
#include "KEZVisRep_p.h"

#include "KEZVisPrimitive.h"

KEZVisRepPrivate::~KEZVisRepPrivate() = default;

KEZVisRep::KEZVisRep()
    : KEZVisRep(new KEZVisRepPrivate)
{
}

KEZVisRep::KEZVisRep(KEZVisRepPrivate *d)
    : QObject(nullptr)
    , d_ptr(d)
{
    d_ptr->q_ptr = this;
}

KEZVisRep::~KEZVisRep()
{
    delete d_ptr;
}

KEZMathBoundingBox KEZVisRep::GetBoundingBox() const
{
    KEZMathBoundingBox result;
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    GetPrimitives(primitives, options);

    bool first = true;
    for (qsizetype i = 0; i < primitives.size(); ++i) {
        const KEZVisPrimitive *primitive = primitives.at(i);
        if (!primitive)
            continue;
        // Each primitive is asked with its own options: a text's box depends on its font.
        const KEZMathBoundingBox box =
            primitive->GetBoundingBox(i < options.size() ? options.at(i) : KEZVisOptions());
        if (first) {
            result = box;
            first = false;
        } else {
            result.Expand(box);
        }
    }
    return result;
}

void KEZVisRep::Save(QDataStream &) const
{
}

void KEZVisRep::Load(QDataStream &)
{
}
