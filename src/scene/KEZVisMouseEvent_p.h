#ifndef KEZVISMOUSEEVENT_P_H
#define KEZVISMOUSEEVENT_P_H

// Private record of KEZVisMouseEvent. Not part of the installed interface.

#include "KEZVisMouseEvent.h"

class KEZVisMouseEventPrivate
{
public:
    explicit KEZVisMouseEventPrivate(KEZVisMouseEvent *q)
        : q_ptr(q)
    {
    }
    virtual ~KEZVisMouseEventPrivate() = default;

    KEZVisMouseEvent::MouseActionFlag action = KEZVisMouseEvent::MouseActionFlag(0);
    const KEZVisMouseContext *context = nullptr;
    KEZVisMouseEvent *q_ptr;
};

#endif // KEZVISMOUSEEVENT_P_H
