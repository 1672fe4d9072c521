#ifndef KEZTOPBODY_P_H
#define KEZTOPBODY_P_H

// Private record of KEZTopBody. Not part of the installed interface.

#include <QList>
#include <QObject>
#include <QPointer>

class KEZTopBodyPrivate
{
public:
    static constexpr int dimensionCount = 3;

    // One list per dimension, in order of addition. Weak pointers, so that an
    // entity deleted by someone else drops out instead of dangling.
    QList<QPointer<QObject>> entities[dimensionCount];
};

#endif // KEZTOPBODY_P_H
