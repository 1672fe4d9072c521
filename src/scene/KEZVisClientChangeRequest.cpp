#include "KEZVisClientChangeRequest.h"

#include <QSharedData>

class KEZVisClientChangeRequestData : public QSharedData
{
public:
    KEZVisClientChangeRequest::ChangeTypes changeTypes;
    KEZMathBoundingBox fitBox;
    KEZMathVector viewDirection;
    KEZMathVector viewOrientation;
    QFlags<KEZVisEnvironment::MouseInteractionFlag> mouseInteraction;
    QFlags<KEZVisEnvironment::MouseSnapGeometryType> mouseSnapGeometryTypes;
    bool selectionEnabled = false;
};

KEZVisClientChangeRequest::KEZVisClientChangeRequest()
    : d(new KEZVisClientChangeRequestData)
{
}

KEZVisClientChangeRequest::KEZVisClientChangeRequest(const KEZVisClientChangeRequest &other) = default;

KEZVisClientChangeRequest &KEZVisClientChangeRequest::operator=(const KEZVisClientChangeRequest &other) = default;

KEZVisClientChangeRequest::~KEZVisClientChangeRequest() = default;

KEZVisClientChangeRequest::ChangeTypes KEZVisClientChangeRequest::GetChangeTypes() const
{
    return d->changeTypes;
}

void KEZVisClientChangeRequest::RequestFit(const KEZMathBoundingBox &box)
{
    d->changeTypes |= FitChange;
    d->fitBox = box;
}

void KEZVisClientChangeRequest::RequestViewDirection(const KEZMathVector &direction)
{
    d->changeTypes |= ViewDirectionChange;
    d->viewDirection = direction;
}

void KEZVisClientChangeRequest::RequestViewOrientation(const KEZMathVector &orientation)
{
    d->changeTypes |= ViewOrientationChange;
    d->viewOrientation = orientation;
}

void KEZVisClientChangeRequest::RequestMouseInteraction(const QFlags<KEZVisEnvironment::MouseInteractionFlag> &flags)
{
    d->changeTypes |= MouseInteractionChange;
    d->mouseInteraction = flags;
}

void KEZVisClientChangeRequest::RequestMouseSnapGeometryTypes(
    const QFlags<KEZVisEnvironment::MouseSnapGeometryType> &types)
{
    d->changeTypes |= MouseSnapGeometryTypesChange;
    d->mouseSnapGeometryTypes = types;
}

void KEZVisClientChangeRequest::RequestSelectionEnabled(bool enabled)
{
    d->changeTypes |= SelectionEnabledChange;
    d->selectionEnabled = enabled;
}

KEZMathBoundingBox KEZVisClientChangeRequest::GetFitBox() const
{
    return d->fitBox;
}

KEZMathVector KEZVisClientChangeRequest::GetViewDirection() const
{
    return d->viewDirection;
}

KEZMathVector KEZVisClientChangeRequest::GetViewOrientation() const
{
    return d->viewOrientation;
}

QFlags<KEZVisEnvironment::MouseInteractionFlag> KEZVisClientChangeRequest::GetMouseInteraction() const
{
    return d->mouseInteraction;
}

QFlags<KEZVisEnvironment::MouseSnapGeometryType> KEZVisClientChangeRequest::GetMouseSnapGeometryTypes() const
{
    return d->mouseSnapGeometryTypes;
}

bool KEZVisClientChangeRequest::IsSelectionEnabled() const
{
    return d->selectionEnabled;
}

void KEZVisClientChangeRequest::Merge(const KEZVisClientChangeRequest &other)
{
    const ChangeTypes theirs = other.d->changeTypes;
    if (theirs.testFlag(ViewDirectionChange)) {
        d->changeTypes |= ViewDirectionChange;
        d->viewDirection = other.d->viewDirection;
    }
    if (theirs.testFlag(ViewOrientationChange)) {
        d->changeTypes |= ViewOrientationChange;
        d->viewOrientation = other.d->viewOrientation;
    }
    if (theirs.testFlag(FitChange)) {
        d->changeTypes |= FitChange;
        d->fitBox = other.d->fitBox;
    }
    if (theirs.testFlag(MouseInteractionChange)) {
        d->changeTypes |= MouseInteractionChange;
        d->mouseInteraction = other.d->mouseInteraction;
    }
    // Deliberately only the bit of the snap geometry is taken over: this request
    // keeps its own snap geometry types. The asymmetry is kept as it is.
    if (theirs.testFlag(MouseSnapGeometryTypesChange))
        d->changeTypes |= MouseSnapGeometryTypesChange;
    if (theirs.testFlag(SelectionEnabledChange)) {
        d->changeTypes |= SelectionEnabledChange;
        d->selectionEnabled = other.d->selectionEnabled;
    }
}
