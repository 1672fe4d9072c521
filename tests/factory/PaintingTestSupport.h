#ifndef PAINTINGTESTSUPPORT_H
#define PAINTINGTESTSUPPORT_H

// Helpers of the painting and export tests: reps made of one primitive,
// options in one line, a capture of the Qt message log and a watchdog that
// ends a hanging test.

#include "KEZVisOptions.h"
#include "KEZVisPolylinePrimitive.h"
#include "KEZVisPrimitive.h"
#include "KEZVisRep.h"
#include "KEZVisRepGraphics.h"

#include <KEZMathPoint.h>
#include <KEZMathSetOfPoints.h>

#include <QColor>
#include <QList>
#include <QLoggingCategory>
#include <QString>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace KEZPaintTest {

// Options with a colour, a priority, a line style and a thickness.
KEZVisOptions Options(const QColor &color, int priority = 0, int lineStyle = 0, double thickness = 1.0);

// A set of points from a flat list of x, y, z values.
KEZMathSetOfPoints PointsOf(std::initializer_list<double> xyz);

// Reps that a test makes, owned until the end of the test, and the list of
// them that the painter is given.
class RepList
{
public:
    // Takes ownership of \a rep and appends it to the list.
    const KEZVisRep *Add(KEZVisRep *rep);
    // Appends a null entry.
    void AddNull() { m_list.append(nullptr); }
    // A graphics rep of one primitive drawn with \a options.
    const KEZVisRep *AddPrimitive(KEZVisPrimitive *primitive, const KEZVisOptions &options);
    // A graphics rep of one polyline.
    const KEZVisRep *AddPolyline(const KEZMathSetOfPoints &points, KEZVisPolylinePrimitive::Structure structure,
                                 const KEZVisOptions &options);

    const QList<const KEZVisRep *> &List() const { return m_list; }

private:
    std::vector<std::unique_ptr<KEZVisRep>> m_owned;
    QList<const KEZVisRep *> m_list;
};

struct LoggedMessage
{
    QtMsgType type;
    QString category;
    QString text;
};

// Collects every message of the Qt log while it lives, and switches on debug
// messages of the painter's category for its lifetime (a test may switch it
// off again through the filter rules).
class MessageCapture
{
public:
    MessageCapture();
    ~MessageCapture();

    QList<LoggedMessage> Messages() const;
    // The messages of \a category whose text starts with \a prefix.
    QList<LoggedMessage> Matching(const QString &category, const QString &prefix) const;

private:
    static void Handler(QtMsgType type, const QMessageLogContext &context, const QString &text);
    QtMessageHandler m_previous;
};

// Aborts the process with a message when it is not dismissed within the given
// time: a paint call that hangs then fails the test instead of blocking the
// suite.
class Watchdog
{
public:
    explicit Watchdog(std::chrono::seconds limit, const char *what);
    ~Watchdog();

private:
    std::mutex m_mutex;
    std::condition_variable m_dismissed;
    bool m_done = false;
    std::thread m_thread;
};

// The quicksort that orders primitives by priority, written out in the test
// as the painter's documentation states it: returns the original positions in
// the order they are painted.
QList<int> PaintOrderOf(const QList<int> &priorities);

} // namespace KEZPaintTest

#endif // PAINTINGTESTSUPPORT_H
