#ifndef KEZVISCLIENTCHANGEREQUEST_H
#define KEZVISCLIENTCHANGEREQUEST_H

#include "kezvisualization_export.h"

#include <QFlags>
#include <QMetaType>
#include <QObject>
#include <QSharedDataPointer>

#include "KEZMathBoundingBox.h"
#include "KEZMathVector.h"
#include "KEZVisEnvironment.h"

class KEZVisClientChangeRequestData;

/*!
    What an environment wants of a view: fit to a box, look along a direction,
    turn to an orientation, change the mouse interaction or the snap geometry,
    enable selection.

    The environment has no view, so each wish leaves through
    KEZVisEnvironment::ClientChangeRequested() as one of these values, and a
    client reads it in KEZVisClient::OnClientChangeRequested(). Each wish is a
    bit of GetChangeTypes() and a value: a Request... operation sets both. The
    getters read their value whether or not its bit is set, so a reader looks at
    GetChangeTypes() first; a request without bits asks for nothing.

    The value is implicitly shared: a copy costs one atomic increment, and every
    Request... operation and Merge() detach first.
*/
class KEZVISUALIZATION_EXPORT KEZVisClientChangeRequest
{
    Q_GADGET

public:
    //! One bit per wish.
    enum ChangeType {
        FitChange = 0x01,                     //!< GetFitBox()
        ViewDirectionChange = 0x02,           //!< GetViewDirection()
        ViewOrientationChange = 0x04,         //!< GetViewOrientation()
        MouseInteractionChange = 0x08,        //!< GetMouseInteraction()
        MouseSnapGeometryTypesChange = 0x10,  //!< GetMouseSnapGeometryTypes()
        SelectionEnabledChange = 0x20         //!< IsSelectionEnabled()
    };
    //! A combination of ChangeType bits.
    Q_DECLARE_FLAGS(ChangeTypes, ChangeType)
    Q_FLAG(ChangeTypes)

    //! A request for nothing: no bits, every value at its default.
    KEZVisClientChangeRequest();
    //! Shares the record of \a other.
    KEZVisClientChangeRequest(const KEZVisClientChangeRequest &other);
    //! Shares the record of \a other; nothing happens if the record is the same.
    KEZVisClientChangeRequest &operator=(const KEZVisClientChangeRequest &other);
    virtual ~KEZVisClientChangeRequest();

    //! The wishes that this request holds.
    ChangeTypes GetChangeTypes() const;

    //! Asks for a fit to \a box.
    void RequestFit(const KEZMathBoundingBox &box);
    //! Asks to look along \a direction.
    void RequestViewDirection(const KEZMathVector &direction);
    //! Asks to turn the view to \a orientation.
    void RequestViewOrientation(const KEZMathVector &orientation);
    //! Asks for the mouse interactions \a flags.
    void RequestMouseInteraction(const QFlags<KEZVisEnvironment::MouseInteractionFlag> &flags);
    //! Asks to snap to the geometry \a types.
    void RequestMouseSnapGeometryTypes(const QFlags<KEZVisEnvironment::MouseSnapGeometryType> &types);
    //! Asks to enable or disable selection.
    void RequestSelectionEnabled(bool enabled);

    //! The box that RequestFit() last set; a default box before that.
    KEZMathBoundingBox GetFitBox() const;
    //! The direction that RequestViewDirection() last set; a default vector before that.
    KEZMathVector GetViewDirection() const;
    //! The orientation that RequestViewOrientation() last set; a default vector before that.
    KEZMathVector GetViewOrientation() const;
    //! The flags that RequestMouseInteraction() last set; none before that.
    QFlags<KEZVisEnvironment::MouseInteractionFlag> GetMouseInteraction() const;
    //! The types that RequestMouseSnapGeometryTypes() last set; none before that.
    QFlags<KEZVisEnvironment::MouseSnapGeometryType> GetMouseSnapGeometryTypes() const;
    //! The value that RequestSelectionEnabled() last set; false before that.
    bool IsSelectionEnabled() const;

    /*!
        Takes over the wishes of \a other, looking at its bits in the order view
        direction, view orientation, fit, mouse interaction, snap geometry,
        selection enabled. For each bit set in \a other the bit is set here and
        the value of \a other replaces this one's (a fit box is replaced, not
        united); bits that \a other lacks leave this request as it is.

        Deliberately, the snap geometry is the exception: its bit is taken over,
        but this request keeps its own snap geometry types.
    */
    void Merge(const KEZVisClientChangeRequest &other);

private:
    QSharedDataPointer<KEZVisClientChangeRequestData> d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(KEZVisClientChangeRequest::ChangeTypes)
Q_DECLARE_METATYPE(KEZVisClientChangeRequest)

#endif // KEZVISCLIENTCHANGEREQUEST_H
