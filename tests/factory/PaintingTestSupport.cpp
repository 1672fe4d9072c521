#include "PaintingTestSupport.h"

#include <cstdio>
#include <cstdlib>

namespace KEZPaintTest {

KEZVisOptions Options(const QColor &color, int priority, int lineStyle, double thickness)
{
    KEZVisOptions options;
    options.SetColor(color);
    options.SetPriority(priority);
    options.SetLineStyle(static_cast<KEZVisOptions::LineStyle>(lineStyle));
    options.SetLineThickness(thickness);
    return options;
}

KEZMathSetOfPoints PointsOf(std::initializer_list<double> xyz)
{
    KEZMathSetOfPoints points;
    const std::vector<double> values(xyz);
    for (size_t n = 0; n + 2 < values.size(); n += 3)
        points.append(KEZMathPoint(values[n], values[n + 1], values[n + 2]));
    return points;
}

const KEZVisRep *RepList::Add(KEZVisRep *rep)
{
    m_owned.emplace_back(rep);
    m_list.append(rep);
    return rep;
}

const KEZVisRep *RepList::AddPrimitive(KEZVisPrimitive *primitive, const KEZVisOptions &options)
{
    return Add(new KEZVisRepGraphics(QList<const KEZVisPrimitive *>{primitive}, options));
}

const KEZVisRep *RepList::AddPolyline(const KEZMathSetOfPoints &points, KEZVisPolylinePrimitive::Structure structure,
                                      const KEZVisOptions &options)
{
    return AddPrimitive(new KEZVisPolylinePrimitive(points, structure), options);
}

namespace {
std::mutex captureMutex;
QList<LoggedMessage> captured;
} // namespace

MessageCapture::MessageCapture()
{
    {
        std::lock_guard<std::mutex> lock(captureMutex);
        captured.clear();
    }
    QLoggingCategory::setFilterRules(QStringLiteral("kez.visualization.painter.debug=true"));
    m_previous = qInstallMessageHandler(&MessageCapture::Handler);
}

MessageCapture::~MessageCapture()
{
    qInstallMessageHandler(m_previous);
    QLoggingCategory::setFilterRules(QString());
}

void MessageCapture::Handler(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    std::lock_guard<std::mutex> lock(captureMutex);
    captured.append({type, QString::fromUtf8(context.category ? context.category : ""), text});
}

QList<LoggedMessage> MessageCapture::Messages() const
{
    std::lock_guard<std::mutex> lock(captureMutex);
    return captured;
}

QList<LoggedMessage> MessageCapture::Matching(const QString &category, const QString &prefix) const
{
    QList<LoggedMessage> matching;
    for (const LoggedMessage &message : Messages())
        if (message.category == category && message.text.startsWith(prefix))
            matching.append(message);
    return matching;
}

Watchdog::Watchdog(std::chrono::seconds limit, const char *what)
{
    m_thread = std::thread([this, limit, what] {
        std::unique_lock<std::mutex> lock(m_mutex);
        if (!m_dismissed.wait_for(lock, limit, [this] { return m_done; })) {
            std::fprintf(stderr, "Watchdog: %s did not finish within %lld s\n", what,
                         static_cast<long long>(limit.count()));
            std::abort();
        }
    });
}

Watchdog::~Watchdog()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_done = true;
    }
    m_dismissed.notify_one();
    m_thread.join();
}

namespace {

void QuickSort(QList<int> &keys, QList<int> &positions, int low, int high)
{
    int i = low;
    int j = high;
    const int pivot = keys[(i + j) / 2];
    while (i <= j) {
        while (keys[i] < pivot)
            ++i;
        while (pivot < keys[j])
            --j;
        if (i > j)
            break;
        std::swap(keys[i], keys[j]);
        std::swap(positions[i], positions[j]);
        ++i;
        --j;
    }
    if (low < j)
        QuickSort(keys, positions, low, j);
    if (i < high)
        QuickSort(keys, positions, i, high);
}

} // namespace

QList<int> PaintOrderOf(const QList<int> &priorities)
{
    QList<int> keys = priorities;
    QList<int> positions;
    for (int n = 0; n < priorities.size(); ++n)
        positions.append(n);
    if (!keys.isEmpty())
        QuickSort(keys, positions, 0, int(keys.size()) - 1);
    return positions;
}

} // namespace KEZPaintTest
