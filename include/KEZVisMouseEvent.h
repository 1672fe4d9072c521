#ifndef KEZVISMOUSEEVENT_H
#define KEZVISMOUSEEVENT_H

#include "kezvisualization_export.h"

#include <QFlags>
#include <QObject>

class KEZVisMouseContext;
class KEZVisMouseEventPrivate;

/*!
    One mouse action and the context in which it happened.

    A viewer builds an event with one action and a context that it keeps alive,
    and emits KEZVisEnvironment::MouseEvent() with it. Receivers read it through
    a const reference during the direct delivery of that signal; events are
    QObjects and can't be copied. The context is not owned.
*/
class KEZVISUALIZATION_EXPORT KEZVisMouseEvent : public QObject
{
    Q_OBJECT

public:
    /*!
        What happened. One event carries one value, and receivers compare for
        equality. The values 8 and 16 are free: no receiver of this library
        reacts to them.
    */
    enum MouseActionFlag {
        MouseMoved = 0x01,          //!< the mouse moved
        MouseClicked = 0x02,        //!< a click
        MouseDoubleClicked = 0x04,  //!< a double click
        MouseReleased = 0x20,       //!< a button was released
        MousePressed = 0x40         //!< a button was pressed
    };
    //! A combination of MouseActionFlag values.
    Q_DECLARE_FLAGS(MouseActionFlags, MouseActionFlag)
    Q_FLAG(MouseActionFlags)

    //! Action 0 and no context.
    KEZVisMouseEvent();
    //! Stores \a action and \a context; the context is not owned.
    KEZVisMouseEvent(MouseActionFlag action, const KEZVisMouseContext *context);
    ~KEZVisMouseEvent() override;

    //! The action that happened; 0 for an event built without one.
    MouseActionFlag GetActionType() const;
    //! Sets the action that GetActionType() answers to \a action.
    void SetActionType(MouseActionFlag action);

    //! The context, not owned; null if none was given.
    const KEZVisMouseContext *GetContext() const;
    //! Sets the context that GetContext() answers to \a context, which may be null; it is not owned.
    void SetContext(const KEZVisMouseContext *context);

    //! The private record.
    inline KEZVisMouseEventPrivate *d_func() { return d_ptr; }
    //! The private record.
    inline const KEZVisMouseEventPrivate *d_func() const { return d_ptr; }

protected:
    //! Adopts a record made by a subclass.
    explicit KEZVisMouseEvent(KEZVisMouseEventPrivate *d);

    KEZVisMouseEventPrivate *d_ptr;

private:
    friend class KEZVisMouseEventPrivate;
    Q_DISABLE_COPY(KEZVisMouseEvent)
};

Q_DECLARE_OPERATORS_FOR_FLAGS(KEZVisMouseEvent::MouseActionFlags)

#endif // KEZVISMOUSEEVENT_H
