#include "ViewerEnvironment.h"

#include <KEZVisSelectionFilter.h>

ViewerEnvironment::ViewerEnvironment(QObject *parent) : KEZVisEnvironment(parent) {}

bool ViewerEnvironment::SetPreSelectedObjects(QSet<KEZVisObject *> objects)
{
    const KEZVisSelectionFilter *filter = GetSelectionFilter();
    QSet<KEZVisObject *> accepted;
    for (KEZVisObject *object : objects) {
        if (object && object->IsSelectable() && filter->IsSelectable(object))
            accepted.insert(object);
    }
    SetPreselectedVisualization(accepted);
    return objects.isEmpty() || !accepted.isEmpty();
}
