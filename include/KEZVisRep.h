#ifndef KEZVISREP_H
#define KEZVISREP_H

#include "KEZVisOptions.h"
#include "kezvisualization_export.h"

#include "KEZMathBoundingBox.h"

#include <QList>
#include <QObject>

QT_BEGIN_NAMESPACE
class QDataStream;
QT_END_NAMESPACE

class KEZVisPrimitive;
class KEZVisRepPrivate;

/*!
 * \class KEZVisRep
 * \brief The display form of a thing: a tree of primitives with their
 * display options.
 *
 * Whatever its kind, a rep hands out a flat list of primitives with a
 * parallel list of options (GetPrimitives()), answers a bounding box, and can
 * be written to and read from a QDataStream. KEZVisRepGraphics is the leaf
 * that owns primitives; KEZVisRepSet the branch that owns child reps.
 *
 * A rep never has a QObject parent: whoever holds it (normally a scene
 * object) owns it, and deleting it deletes the whole tree under it. The
 * pointers handed out by GetPrimitives() are borrowed and live as long as the
 * rep.
 */
class KEZVISUALIZATION_EXPORT KEZVisRep : public QObject
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZVisRep)

public:
    ~KEZVisRep() override;

    /*!
     * Appends the primitives of the rep to \a primitives and, for each of
     * them, the options it is drawn with to \a options. Never clears either
     * list: asking twice with the same lists doubles them.
     */
    virtual void GetPrimitives(QList<const KEZVisPrimitive *> &primitives,
                               QList<KEZVisOptions> &options) const = 0;

    /*!
     * The box around all primitives that GetPrimitives() answers: the box of
     * the first, expanded by the box of each further one, each asked with its
     * own options (the box of a text depends on its font). The default box
     * when there are no primitives. Null entries are skipped.
     */
    virtual KEZMathBoundingBox GetBoundingBox() const;

    /*! Writes the rep; the base writes nothing. */
    virtual void Save(QDataStream &stream) const;

    /*! Reads the rep; the base reads nothing. */
    virtual void Load(QDataStream &stream);

protected:
    /*! A rep with a record of its own. */
    KEZVisRep();

    /*!
     * Lets a subclass bring a record derived from KEZVisRepPrivate; the rep
     * takes ownership of it and deletes it through its virtual destructor.
     */
    explicit KEZVisRep(KEZVisRepPrivate *d);

    KEZVisRepPrivate *d_ptr;

private:
    Q_DISABLE_COPY(KEZVisRep)
};

#endif // KEZVISREP_H
