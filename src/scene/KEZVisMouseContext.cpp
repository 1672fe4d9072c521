#include "KEZVisMouseContext.h"

#include "KEZVisMouseContext_p.h"

KEZVisMouseContext::KEZVisMouseContext()
    : KEZVisMouseContext(new KEZVisMouseContextPrivate(this))
{
}

KEZVisMouseContext::KEZVisMouseContext(KEZVisMouseContextPrivate *d)
    : QObject(nullptr)
    , d_ptr(d)
{
}

KEZVisMouseContext::~KEZVisMouseContext()
{
    delete d_ptr;
}

QFlags<KEZVisMouseContext::SnapType> KEZVisMouseContext::GetSnapType() const
{
    return d_ptr->snapType;
}

void KEZVisMouseContext::SetSnapType(QFlags<SnapType> snapType)
{
    d_ptr->snapType = snapType;
}

KEZMathVector KEZVisMouseContext::GetSnapAxis() const
{
    return d_ptr->snapAxis;
}

void KEZVisMouseContext::SetSnapAxis(const KEZMathVector &axis)
{
    d_ptr->snapAxis = axis;
}

KEZMathPoint KEZVisMouseContext::GetSnapPoint() const
{
    return d_ptr->snapPoint;
}

void KEZVisMouseContext::SetSnapPoint(const KEZMathPoint &point)
{
    d_ptr->snapPoint = point;
}

KEZMathPoint KEZVisMouseContext::GetMousePoint() const
{
    return d_ptr->mousePoint;
}

void KEZVisMouseContext::SetMousePoint(const KEZMathPoint &point)
{
    d_ptr->mousePoint = point;
}

KEZMathVector KEZVisMouseContext::GetViewDirection() const
{
    return d_ptr->viewDirection;
}

void KEZVisMouseContext::SetViewDirection(const KEZMathVector &direction)
{
    d_ptr->viewDirection = direction;
}

const KEZVisObject *KEZVisMouseContext::GetVisObject() const
{
    return d_ptr->visualizationObject;
}

void KEZVisMouseContext::SetVisObject(const KEZVisObject *object)
{
    d_ptr->visualizationObject = object;
}

KEZVisMouseContext::NativeGeometrySelectionType KEZVisMouseContext::GetGeometrySelectionType() const
{
    return d_ptr->geometrySelectionType;
}

void KEZVisMouseContext::SetGeometrySelectionType(const NativeGeometrySelectionType &type)
{
    d_ptr->geometrySelectionType = type;
}

QList<KEZMathVector> KEZVisMouseContext::GetSelectedAxises() const
{
    return d_ptr->selectedAxises;
}

void KEZVisMouseContext::SetSelectedAxises(const QList<KEZMathVector> &axises)
{
    d_ptr->selectedAxises = axises;
}

QList<KEZMathPoint> KEZVisMouseContext::GetSelectedPoints() const
{
    return d_ptr->selectedPoints;
}

void KEZVisMouseContext::SetSelectedPoints(const QList<KEZMathPoint> &points)
{
    d_ptr->selectedPoints = points;
}
