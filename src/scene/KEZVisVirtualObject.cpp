#include "KEZVisVirtualObject.h"

#include "KEZVisVirtualObject_p.h"

KEZVisVirtualObjectPrivate::KEZVisVirtualObjectPrivate(KEZVisVirtualObject *q,
                                                       const KEZVisEnvironment *environment)
    : KEZVisObjectPrivate(q, environment)
{
}

KEZVisVirtualObjectPrivate::~KEZVisVirtualObjectPrivate() = default;

KEZVisVirtualObject::KEZVisVirtualObject(const KEZVisEnvironment *environment, QObject *parent)
    : KEZVisObject(new KEZVisVirtualObjectPrivate(this, environment), parent)
{
}

KEZVisVirtualObject::~KEZVisVirtualObject() = default;

bool KEZVisVirtualObject::IsVisible() const
{
    Q_D(const KEZVisVirtualObject);
    return d->visible;
}

bool KEZVisVirtualObject::IsSelectable() const
{
    Q_D(const KEZVisVirtualObject);
    return d->selectable;
}

QString KEZVisVirtualObject::GetLabel() const
{
    Q_D(const KEZVisVirtualObject);
    return d->label;
}

bool KEZVisVirtualObject::IsPosition() const
{
    Q_D(const KEZVisVirtualObject);
    return d->hasPosition;
}

KEZMathAxis KEZVisVirtualObject::GetPosition() const
{
    Q_D(const KEZVisVirtualObject);
    return d->position;
}

void KEZVisVirtualObject::SetRep(const KEZVisRep *rep)
{
    UpdateRep(rep);
}

void KEZVisVirtualObject::SetPosition(const KEZMathAxis *position)
{
    Q_D(KEZVisVirtualObject);
    if (position) {
        if (!(d->position != *position))
            return;
        d->hasPosition = true;
        d->position = *position;
        KEZVisObjectPrivate::EmitChange(this, [this, position] { emit PositionChanged(*position); }, PositionChange);
        return;
    }
    if (!d->hasPosition)
        return;
    d->hasPosition = false;
    // The stored axis stays: GetPosition() goes on answering it.
    const KEZMathAxis identity;
    if (!(d->position != identity))
        return;
    KEZVisObjectPrivate::EmitChange(this, [this, &identity] { emit PositionChanged(identity); }, PositionChange);
}

void KEZVisVirtualObject::Hide()
{
    SetVisibility(false);
}

void KEZVisVirtualObject::Show()
{
    SetVisibility(true);
}

void KEZVisVirtualObject::SetVisibility(bool state)
{
    Q_D(KEZVisVirtualObject);
    if (d->visible == state)
        return;
    d->visible = state;
    KEZVisObjectPrivate::EmitChange(this, [this, state] { emit VisibilityChanged(state); }, VisibilityChange);
}

void KEZVisVirtualObject::EnableSelection()
{
    SetSelectability(true);
}

void KEZVisVirtualObject::DisableSelection()
{
    SetSelectability(false);
}

void KEZVisVirtualObject::SetSelectability(bool state)
{
    Q_D(KEZVisVirtualObject);
    if (d->selectable == state)
        return;
    d->selectable = state;
    KEZVisObjectPrivate::EmitChange(this, [this, state] { emit SelectabilityChanged(state); }, SelectabilityChange);
}

void KEZVisVirtualObject::SetLabel(const QString &label)
{
    Q_D(KEZVisVirtualObject);
    // QString's equality compares the sizes first, then the characters, case-sensitively.
    if (d->label == label)
        return;
    d->label = label;
    KEZVisObjectPrivate::EmitChange(this, [this, &label] { emit LabelChanged(label); }, LabelChange);
}
