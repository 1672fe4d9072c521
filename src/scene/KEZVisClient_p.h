#ifndef KEZVISCLIENT_P_H
#define KEZVISCLIENT_P_H

// Private object of KEZVisClient. Not part of the installed interface.

#include "KEZVisClient.h"

#include <QObject>
#include <QPointer>
#include <QSet>

#include <functional>

class KEZVisClientChangeRequest;
class KEZVisEnvironment;

/*
    Receiver of every connection made for a client, so that a subclass's own
    slots and meta-object stay untouched. It has no parent and no signals.
*/
class KEZVISUALIZATION_EXPORT KEZVisClientPrivate : public QObject
{
    Q_OBJECT

public:
    explicit KEZVisClientPrivate(KEZVisClient *q);
    ~KEZVisClientPrivate() override;

    //! Moves the connections from the current environment to \a environment.
    void Wire(KEZVisEnvironment *environment);
    /*
        Calls \a visit for each object of \a environment in list order, skipping
        objects that listeners destroyed meanwhile. Answers false if the client
        itself was destroyed, and then touches nothing more.
    */
    bool ForEachObject(KEZVisEnvironment *environment, const std::function<void(KEZVisObject *)> &visit);
    //! Hands a change of \a object to the client.
    void DeliverChange(KEZVisObject *object, KEZVisObject::ChangeTypes changes);

    QPointer<KEZVisEnvironment> environment;
    KEZVisClient *q_ptr;

public slots:
    //! Connects the object's ChangeOccurred() to DeliverChange(), then tells the client.
    void OnObjectAdded(KEZVisObject *object);
    void OnObjectRemoved(KEZVisObject *object);
    /*
        Hands a change to the client if sender() is a KEZVisObject, and ignores
        it otherwise. The objects of the environment don't reach the client
        through this slot but through DeliverChange(), with the same outcome:
        sender() costs time linear in the number of connected objects.
    */
    void OnObjectChanged(KEZVisObject::ChangeTypes changes);
    void OnClientChangeRequested(const KEZVisClientChangeRequest &request);
    void OnVisualizationSelectionChanged(const QSet<KEZVisObject *> &selected,
                                         const QSet<KEZVisObject *> &deselected);
    void OnVisualizationPreselectionChanged(const QSet<KEZVisObject *> &oldSelection,
                                            const QSet<KEZVisObject *> &newSelection);
    void StartBatch();
    void FinishBatch();

private:
    Q_DECLARE_PUBLIC(KEZVisClient)
};

#endif // KEZVISCLIENT_P_H
