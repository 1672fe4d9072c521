#include "KEZVisMouseEvent.h"

#include "KEZVisMouseEvent_p.h"

KEZVisMouseEvent::KEZVisMouseEvent()
    : KEZVisMouseEvent(new KEZVisMouseEventPrivate(this))
{
}

KEZVisMouseEvent::KEZVisMouseEvent(MouseActionFlag action, const KEZVisMouseContext *context)
    : KEZVisMouseEvent(new KEZVisMouseEventPrivate(this))
{
    d_ptr->action = action;
    d_ptr->context = context;
}

KEZVisMouseEvent::KEZVisMouseEvent(KEZVisMouseEventPrivate *d)
    : QObject(nullptr)
    , d_ptr(d)
{
}

KEZVisMouseEvent::~KEZVisMouseEvent()
{
    delete d_ptr;
}

KEZVisMouseEvent::MouseActionFlag KEZVisMouseEvent::GetActionType() const
{
    return d_ptr->action;
}

void KEZVisMouseEvent::SetActionType(MouseActionFlag action)
{
    d_ptr->action = action;
}

const KEZVisMouseContext *KEZVisMouseEvent::GetContext() const
{
    return d_ptr->context;
}

void KEZVisMouseEvent::SetContext(const KEZVisMouseContext *context)
{
    d_ptr->context = context;
}
