#ifndef KEZVISENVIRONMENT_P_H
#define KEZVISENVIRONMENT_P_H

// Private object of KEZVisEnvironment. Not part of the installed interface.

#include "KEZVisEnvironment.h"
#include "KEZVisEnvironmentObjectList_p.h"

#include <QObject>
#include <QSet>
#include <QSharedPointer>

class KEZVisEnvironmentBatchContext;
class KEZVisSelectionFilter;

/*
    The environment's state. It is a QObject of its own, without parent, signals
    or slots, so that connections made on behalf of the environment never touch
    the meta-object of a subclass of KEZVisEnvironment.
*/
class KEZVISUALIZATION_EXPORT KEZVisEnvironmentPrivate : public QObject
{
    Q_OBJECT

public:
    explicit KEZVisEnvironmentPrivate(KEZVisEnvironment *q);
    //! Deletes an open selection scope, then releases the sets, the filter and the list.
    ~KEZVisEnvironmentPrivate() override;

    static KEZVisEnvironmentPrivate *get(KEZVisEnvironment *environment) { return environment->d_ptr; }

    /*
        The death of an object that names \a environment: every occurrence
        leaves the list, the object leaves the selection, preselection, pending
        additions and pending removals, and ObjectRemoved() goes out whether or
        not it was listed. Nothing happens once the environment's private
        object is gone.
    */
    static void ObjectDestroyed(const KEZVisEnvironment *environment, KEZVisObject *object);

    //! The serial of the object list of \a environment; 0 for null or a dying environment.
    static quint64 ListSerialOf(const KEZVisEnvironment *environment);

    //! Opens a batch; BatchStarted() goes out if it is the outermost.
    void StartBatch();
    //! Closes a batch; raises "batch count already zero" if none is open.
    void FinishBatch();
    //! Opens a selection batch; BatchSelectionStarted() goes out if it is the outermost.
    void StartBatchSelection();
    //! Closes a selection batch; raises "batch selection count already zero" if none is open.
    void FinishBatchSelection();

    //! Installs the default filter through the virtual SetSelectionFilter() if there is none.
    void EnsureSelectionFilter();
    //! Emits one request built by \a build.
    template <typename Build>
    void SendRequest(Build build);

    KEZVisEnvironmentObjectList objects;
    QSharedPointer<KEZVisSelectionFilter> selectionFilter;
    QSet<KEZVisObject *> selection;
    QSet<KEZVisObject *> preselection;
    QSet<KEZVisObject *> pendingAdditions;
    QSet<KEZVisObject *> pendingRemovals;
    /*
        Counts the events that may take entries out of the pending sets while a
        commit calls out to listeners (an object's death, the end of a nested
        commit). A commit that sees it unchanged knows that every object of its
        snapshot is still pending, without a lookup per object.
    */
    quint64 pendingShrinks = 0;
    int batchCount = 0;
    int batchSelectionCount = 0;
    KEZVisEnvironmentBatchContext *selectionScope = nullptr;  // owned
    KEZVisEnvironment::MouseInteractionFlags mouseInteraction;
    KEZVisEnvironment::MouseSnapGeometryTypes mouseSnapGeometryTypes;
    KEZVisMouseContext::NativeGeometrySelectionType nativeGeometrySelectionType =
        KEZVisMouseContext::NoGeometrySelection;
    bool selectionEnabled = false;
    KEZVisEnvironment *q_ptr;

private:
    Q_DECLARE_PUBLIC(KEZVisEnvironment)
};

#endif // KEZVISENVIRONMENT_P_H
