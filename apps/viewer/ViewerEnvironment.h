#ifndef KEZVIEWER_VIEWERENVIRONMENT_H
#define KEZVIEWER_VIEWERENVIRONMENT_H

// The environment of the viewer. The library's environment only answers
// whether a preselection would be accepted; this one also commits it, so that
// hovering an object preselects it.

#include <KEZVisEnvironment.h>

class ViewerEnvironment : public KEZVisEnvironment
{
    Q_OBJECT
public:
    explicit ViewerEnvironment(QObject *parent = nullptr);

    // Makes the preselection the objects of \a objects that are selectable and
    // that the selection filter accepts; null entries are skipped. Answers
    // false when \a objects is not empty and none of them is accepted: the
    // preselection is then cleared, since the mouse is over nothing that it
    // could preselect.
    bool SetPreSelectedObjects(QSet<KEZVisObject *> objects) override;
};

#endif // KEZVIEWER_VIEWERENVIRONMENT_H
