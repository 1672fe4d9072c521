#ifndef KEZVISCLIENT_H
#define KEZVISCLIENT_H

#include "kezvisualization_export.h"

#include <QByteArray>
#include <QObject>
#include <QSet>

#include "KEZVisObject.h"

class KEZVisClientChangeRequest;
class KEZVisClientPrivate;
class KEZVisEnvironment;

/*!
    A process-wide constant with the text "NeedRedrawWhenVisible", built at
    start-up. Nothing in this library reads it; what a viewer does with it is up
    to the viewer.
*/
extern KEZVISUALIZATION_EXPORT const QByteArray KEZVisNeedRedrawWhenVisible;

/*!
    Abstract listener of one environment: a viewer, a renderer, anything that
    mirrors a scene.

    A subclass implements the virtual operations and is told of every object,
    every change of an object, every view request, every selection and
    preselection change, and the batches around them. The wiring is hidden in a
    private QObject that receives all connections, so the subclass's own
    meta-object stays untouched.

    SetEnvironment() attaches the client: it first takes leave of the old
    environment (BeginBatch(), OnObjectRemoved() for each of its objects,
    EndBatch()), then replays the new one's objects in one batch (BeginBatch(),
    OnObjectAdded() for each, EndBatch()), and always calls
    OnEnvironmentChanged() last. The selection and preselection aren't
    replayed: read them from the environment if needed. An object that a
    handler destroys during the leave-taking or the replay is skipped, and a
    client that a handler destroys is called no more.

    Within a batch a client gets exactly what it would get without one, at the
    moment it happens; nothing is stored, deferred or merged. The bracket lets a
    subclass put off expensive work, such as a redraw.

    An object taken out with KEZVisEnvironment::RemoveVirtualObject() that lives
    on stays connected, so its changes still reach OnObjectChanged(); this is
    kept as designed. An object listed twice reports each change twice.

    The environment is held weakly: when it dies the client notices nothing and
    GetEnvironment() answers null. When the client dies its connections go with
    it, and the environment isn't told. A subclass must not make its own
    environment emit signals from its destructor, since the virtual operations
    of a half-destroyed client can't be reached.

    KEZVisEnvironment::MouseEvent(), SelectionFilterChanged(),
    BatchSelectionStarted() and BatchSelectionFinished() don't reach a client.
*/
class KEZVISUALIZATION_EXPORT KEZVisClient : public QObject
{
    Q_OBJECT

public:
    ~KEZVisClient() override;

    //! Attaches to \a environment, or detaches with null; see the class description.
    void SetEnvironment(KEZVisEnvironment *environment);
    //! The environment; null if none is set or it is destroyed.
    KEZVisEnvironment *GetEnvironment() const;

protected:
    //! A client without parent and without environment.
    KEZVisClient();

    //! Last step of every SetEnvironment(), also when nothing changed.
    virtual void OnEnvironmentChanged(KEZVisEnvironment *environment) = 0;
    //! \a object was added to the environment, or is replayed on attaching.
    virtual void OnObjectAdded(KEZVisObject *object) = 0;
    /*!
        \a object was removed, died, or is taken leave of on detaching. A dying
        object is only a KEZVisObject by now: don't call its virtual operations.
    */
    virtual void OnObjectRemoved(KEZVisObject *object) = 0;
    //! \a object announced \a changes through ChangeOccurred().
    virtual void OnObjectChanged(KEZVisObject *object, KEZVisObject::ChangeTypes changes) = 0;
    //! The environment wants something of the view.
    virtual void OnClientChangeRequested(const KEZVisClientChangeRequest &request) = 0;
    //! The outermost batch of the environment opened, or a replay starts.
    virtual void BeginBatch();
    //! The outermost batch of the environment closed, or a replay ended.
    virtual void EndBatch();
    //! A selection transaction committed; see KEZVisEnvironment::VisualizationSelectionChanged().
    virtual void OnVisualizationSelectionChanged(const QSet<KEZVisObject *> &selected,
                                                 const QSet<KEZVisObject *> &deselected);
    //! The preselection was replaced.
    virtual void OnVisualizationPreselectionChanged(const QSet<KEZVisObject *> &oldSelection,
                                                    const QSet<KEZVisObject *> &newSelection);

    KEZVisClientPrivate *d_ptr;

private:
    Q_DECLARE_PRIVATE(KEZVisClient)
    Q_DISABLE_COPY(KEZVisClient)
};

#endif // KEZVISCLIENT_H
