#ifndef KEZVISMOUSECONTEXT_H
#define KEZVISMOUSECONTEXT_H

#include "kezvisualization_export.h"

#include <QFlags>
#include <QList>
#include <QObject>

#include "KEZMathPoint.h"
#include "KEZMathVector.h"

class KEZVisMouseContextPrivate;
class KEZVisObject;

/*!
    A snapshot of the mouse, filled by a viewer: the point under the mouse in
    model space, the object there, snap results and what is picked.

    A viewer fills a context, keeps it alive, wraps it in a KEZVisMouseEvent and
    emits KEZVisEnvironment::MouseEvent(). Every setter stores its value as it
    is and emits nothing; there is no validation, and no setter touches the
    snap type: a viewer that sets a snap point also sets SnapToPoint.

    The object under the mouse is not owned; destroying the context leaves it
    alone.
*/
class KEZVISUALIZATION_EXPORT KEZVisMouseContext : public QObject
{
    Q_OBJECT

public:
    //! Which snap results a context holds.
    enum SnapType {
        SnapToPoint = 0x1,  //!< the snap point is valid
        SnapToAxis = 0x2    //!< the snap axis is valid
    };
    //! A combination of SnapType values.
    Q_DECLARE_FLAGS(SnapTypes, SnapType)
    Q_FLAG(SnapTypes)

    /*!
        The kind of native geometry that a viewer picked. The library stores and
        forwards the value without looking at it; the enumerators other than
        NoGeometrySelection are for viewers to agree on.
    */
    enum NativeGeometrySelectionType {
        NoGeometrySelection = 0,       //!< nothing picked; the initial value
        VertexGeometrySelection = 1,   //!< a vertex
        EdgeGeometrySelection = 2,     //!< an edge or curve
        FaceGeometrySelection = 3,     //!< a face or surface
        BodyGeometrySelection = 4      //!< a whole body
    };
    Q_ENUM(NativeGeometrySelectionType)

    //! A context with every field at its initial value.
    KEZVisMouseContext();
    ~KEZVisMouseContext() override;

    //! Which of the snap results are valid; no flags initially.
    QFlags<SnapType> GetSnapType() const;
    //! Sets the flags that GetSnapType() answers to \a snapType.
    void SetSnapType(QFlags<SnapType> snapType);

    //! The direction snapped to; default-constructed (not valid) initially.
    KEZMathVector GetSnapAxis() const;
    //! Sets the direction that GetSnapAxis() answers to \a axis; the snap type is left alone.
    void SetSnapAxis(const KEZMathVector &axis);

    //! The point snapped to.
    KEZMathPoint GetSnapPoint() const;
    //! Sets the point that GetSnapPoint() answers to \a point; the snap type is left alone.
    void SetSnapPoint(const KEZMathPoint &point);

    //! The mouse in model space.
    KEZMathPoint GetMousePoint() const;
    //! Sets the point that GetMousePoint() answers to \a point.
    void SetMousePoint(const KEZMathPoint &point);

    //! The viewer's direction of view at this moment.
    KEZMathVector GetViewDirection() const;
    //! Sets the direction that GetViewDirection() answers to \a direction.
    void SetViewDirection(const KEZMathVector &direction);

    //! The object under the mouse, not owned; null initially.
    const KEZVisObject *GetVisObject() const;
    //! Sets the object that GetVisObject() answers to \a object, which may be null; it is not owned.
    void SetVisObject(const KEZVisObject *object);

    //! The kind of native geometry picked; NoGeometrySelection initially.
    NativeGeometrySelectionType GetGeometrySelectionType() const;
    //! Sets the kind that GetGeometrySelectionType() answers to \a type.
    void SetGeometrySelectionType(const NativeGeometrySelectionType &type);

    //! The picked directions; the list is shared with the caller's.
    QList<KEZMathVector> GetSelectedAxises() const;
    //! Sets the directions that GetSelectedAxises() answers to \a axises.
    void SetSelectedAxises(const QList<KEZMathVector> &axises);

    //! The picked points; the list is shared with the caller's.
    QList<KEZMathPoint> GetSelectedPoints() const;
    //! Sets the points that GetSelectedPoints() answers to \a points.
    void SetSelectedPoints(const QList<KEZMathPoint> &points);

    //! The private record.
    inline KEZVisMouseContextPrivate *d_func() { return d_ptr; }
    //! The private record.
    inline const KEZVisMouseContextPrivate *d_func() const { return d_ptr; }

protected:
    //! Adopts a record made by a subclass.
    explicit KEZVisMouseContext(KEZVisMouseContextPrivate *d);

    KEZVisMouseContextPrivate *d_ptr;

private:
    friend class KEZVisMouseContextPrivate;
    Q_DISABLE_COPY(KEZVisMouseContext)
};

Q_DECLARE_OPERATORS_FOR_FLAGS(KEZVisMouseContext::SnapTypes)

#endif // KEZVISMOUSECONTEXT_H
