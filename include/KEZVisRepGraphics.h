#ifndef KEZVISREPGRAPHICS_H
#define KEZVISREPGRAPHICS_H

#include "KEZVisRep.h"
#include "kezvisualization_export.h"

#include <QColor>

class KEZVisRepGraphicsPrivate;

/*!
 * \class KEZVisRepGraphics
 * \brief The leaf rep: primitives with their display options.
 *
 * The rep owns its primitives and deletes each non-null one, in list order,
 * when it goes. A primitive must have exactly one owner: the same primitive in
 * two reps is deleted twice.
 *
 * The options list may be shorter than the primitives: primitive i is drawn
 * with options entry i when there is one, and with entry 0 otherwise, so that
 * one entry serves many primitives. A rep without any options entry answers
 * default-constructed options for its primitives.
 *
 * \section repgraphics_stream Rep stream
 *
 * Save() writes the persistent form of the rep, with no magic, version or
 * class tag: the order of the values is all there is. The library sets
 * neither byte order nor version on the stream; integers and doubles follow
 * the caller's stream, and the stream's version governs QString, QColor and
 * QFont.
 *
 * - the number of primitives, qint32;
 * - the number of options entries, qint32;
 * - each options entry (the stream form of KEZVisOptions);
 * - each primitive: a tag, then its data.
 *
 * A KEZVisPolylinePrimitive is tagged with the QString "KEZVisPolylinePrimitive"
 * and followed by its stream form; a KEZVisSurfacePrimitive or a subclass with
 * the QString "KEZVisSurfacePrimitive" and its stream form (so polygons,
 * prisms and pyramids are written as empty surfaces). Anything else (points,
 * text, null entries) is written as the narrow string "KEZVisPrimitive" in
 * QDataStream's `const char *` form, with nothing after it: such primitives
 * deliberately do not survive a stream, and Load() does not expect that form.
 */
class KEZVISUALIZATION_EXPORT KEZVisRepGraphics : public KEZVisRep
{
    Q_OBJECT
    Q_DECLARE_PRIVATE(KEZVisRepGraphics)

public:
    /*! A rep without primitives or options. */
    KEZVisRepGraphics();

    /*!
     * Takes over the primitives and shares both lists. The sizes are not
     * compared: fewer options than primitives is the usual case.
     */
    KEZVisRepGraphics(const QList<const KEZVisPrimitive *> &primitives, const QList<KEZVisOptions> &options);

    /*! Takes over the primitives; the one options entry serves all of them. */
    KEZVisRepGraphics(const QList<const KEZVisPrimitive *> &primitives, const KEZVisOptions &options);

    ~KEZVisRepGraphics() override;

    /*!
     * Appends all primitives, then for primitive i the options entry i if
     * there is one, else entry 0 (default options when there are none).
     */
    void GetPrimitives(QList<const KEZVisPrimitive *> &primitives, QList<KEZVisOptions> &options) const override;

    /*! Writes the rep stream described with the class. */
    void Save(QDataStream &stream) const override;

    /*!
     * Reads the rep stream described with the class.
     *
     * Reads the number of primitives (0 from a short stream), then the options
     * as Qt's list readers do: the status is judged for this list alone (reset
     * first unless a device transaction is running, the earlier failure set
     * again afterwards), the options are replaced, and a failing entry leaves
     * them empty. Then, for each announced primitive, a QString tag: a
     * polyline or a surface of the plain class of the tag is read and appended;
     * any other tag is skipped with nothing more read, since nothing tells how
     * long its data is. Primitives already in the rep stay: loading adds to
     * them.
     *
     * A polyline's reader takes its count narrower than it is written, so the
     * stream gets out of step after a polyline and a rep with polylines does
     * not come back whole; see KEZVisPolylinePrimitive's stream operators.
     *
     * Bad input never crashes or allocates out of proportion to the data:
     * the verdict is the stream's status. A negative count of primitives or of
     * options sets QDataStream::ReadCorruptData. An options entry whose font
     * announces more families than the rest of the device could hold is not
     * handed to Qt's QFont reader, which would reserve for all of them: the
     * options stage ends there with QDataStream::ReadPastEnd. Once the stream has failed,
     * or has no more data, no further primitive is read (a stream that ends
     * before the announced primitives gets QDataStream::ReadPastEnd); what was
     * read until then stays in the rep.
     */
    void Load(QDataStream &stream) override;

    /*!
     * Takes the first occurrence of \a primitive out of the rep and hands it
     * back to the caller: it is not deleted. Then one options entry may go:
     * the walk over the primitives counts an index from -1 up by one per
     * element looked at and stops on the match; when there is none, the index
     * is left on the last element, and the options step runs all the same.
     * If the index is within the options list, the entry there is removed when
     * no primitive is left, or when more than one entry exists, so that a
     * single entry that serves all primitives survives.
     */
    void RemovePrimitive(const KEZVisPrimitive *primitive);

    /*! Sets \a color on every options entry; the primitives stay as they are. */
    void SetColor(const QColor &color);

protected:
    /*!
     * Lets a subclass bring a record derived from KEZVisRepGraphicsPrivate;
     * the rep takes ownership of it.
     */
    explicit KEZVisRepGraphics(KEZVisRepGraphicsPrivate *d);

private:
    Q_DISABLE_COPY(KEZVisRepGraphics)
};

#endif // KEZVISREPGRAPHICS_H
