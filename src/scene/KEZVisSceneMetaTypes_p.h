#ifndef KEZVISSCENEMETATYPES_P_H
#define KEZVISSCENEMETATYPES_P_H

// Registration of the scene's signal argument types with Qt's meta-type system.

/*
    Registers, once per process, the types that the scene's signals carry under
    their names ("KEZVisObject::SelectionState", "KEZVisObject::ChangeTypes",
    "QSet<KEZVisObject*>", "KEZVisClientChangeRequest", ...), so that queued
    connections, QVariant and signal spies can handle them. Cheap after the
    first call. The library's load-time routine calls it, and so do the
    constructors of objects, environments and clients, for safety.
*/
void KEZVisRegisterSceneMetaTypes();

#endif // KEZVISSCENEMETATYPES_P_H
