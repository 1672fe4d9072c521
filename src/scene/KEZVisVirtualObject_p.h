#ifndef KEZVISVIRTUALOBJECT_P_H
#define KEZVISVIRTUALOBJECT_P_H

// Private record of KEZVisVirtualObject. Not part of the installed interface.

#include "KEZVisObject_p.h"
#include "KEZVisVirtualObject.h"

#include <QString>

#include "KEZMathAxis.h"

class KEZVISUALIZATION_EXPORT KEZVisVirtualObjectPrivate : public KEZVisObjectPrivate
{
public:
    KEZVisVirtualObjectPrivate(KEZVisVirtualObject *q, const KEZVisEnvironment *environment);
    ~KEZVisVirtualObjectPrivate() override;

    bool visible = true;
    bool selectable = false;
    QString label;
    bool hasPosition = false;
    KEZMathAxis position;
};

#endif // KEZVISVIRTUALOBJECT_P_H
