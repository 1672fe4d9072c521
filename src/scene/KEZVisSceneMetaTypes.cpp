#include "KEZVisSceneMetaTypes_p.h"

#include "KEZVisClientChangeRequest.h"
#include "KEZVisEnvironment.h"
#include "KEZVisMouseContext.h"
#include "KEZVisObject.h"
#include "KEZVisSelectionFilter.h"

#include <QList>
#include <QMetaType>
#include <QSet>

namespace {

bool registerSceneMetaTypes()
{
    qRegisterMetaType<KEZVisObject::SelectionState>("KEZVisObject::SelectionState");
    qRegisterMetaType<KEZVisObject::ChangeTypes>("KEZVisObject::ChangeTypes");
    qRegisterMetaType<KEZVisObject *>("KEZVisObject*");
    qRegisterMetaType<QSet<KEZVisObject *>>("QSet<KEZVisObject*>");
    qRegisterMetaType<QList<KEZVisObject *>>("QList<KEZVisObject*>");
    qRegisterMetaType<KEZVisSelectionFilter *>("KEZVisSelectionFilter*");
    qRegisterMetaType<KEZVisClientChangeRequest>("KEZVisClientChangeRequest");
    qRegisterMetaType<KEZVisClientChangeRequest::ChangeTypes>("KEZVisClientChangeRequest::ChangeTypes");
    qRegisterMetaType<KEZVisEnvironment::MouseInteractionFlags>("KEZVisEnvironment::MouseInteractionFlags");
    qRegisterMetaType<KEZVisEnvironment::MouseSnapGeometryTypes>("KEZVisEnvironment::MouseSnapGeometryTypes");
    qRegisterMetaType<KEZVisMouseContext::NativeGeometrySelectionType>(
        "KEZVisMouseContext::NativeGeometrySelectionType");
    qRegisterMetaType<KEZMathAxis>("KEZMathAxis");
    return true;
}

} // namespace

void KEZVisRegisterSceneMetaTypes()
{
    // A function-local static runs the registration exactly once, thread-safely.
    static const bool registered = registerSceneMetaTypes();
    Q_UNUSED(registered);
}
