#include "SceneClient.h"

#include <KEZVisEnvironment.h>
#include <KEZVisPointPrimitive.h>
#include <KEZVisPolylinePrimitive.h>
#include <KEZVisRep.h>
#include <KEZVisSurfacePrimitive.h>

#include <KEZMathAxis.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

// Maps points of an object's own space into the world by its position.
struct Placement
{
    explicit Placement(const KEZMathAxis &axis)
    {
        axis.GetOrigin().GetCoord(o[0], o[1], o[2]);
        axis.GetFirstDirection().GetCoord(f[0], f[1], f[2]);
        axis.GetSecondDirection().GetCoord(s[0], s[1], s[2]);
        axis.GetThirdDirection().GetCoord(t[0], t[1], t[2]);
    }
    // Writes the mapped point to out; false when a coordinate is not finite.
    bool Map(double x, double y, double z, double *out) const
    {
        for (int k = 0; k < 3; ++k)
            out[k] = o[k] + f[k] * x + s[k] * y + t[k] * z;
        return std::isfinite(out[0]) && std::isfinite(out[1]) && std::isfinite(out[2]);
    }
    double o[3], f[3], s[3], t[3];
};

void Grow(std::array<double, 6> &box, bool &hasBox, const double *p)
{
    if (!hasBox) {
        box = {p[0], p[1], p[2], p[0], p[1], p[2]};
        hasBox = true;
        return;
    }
    for (int k = 0; k < 3; ++k) {
        box[k] = std::min(box[k], p[k]);
        box[k + 3] = std::max(box[k + 3], p[k]);
    }
}

double SegmentDistance(const QPointF &p, const QPointF &a, const QPointF &b, double *along)
{
    const QPointF ab = b - a;
    const double length2 = QPointF::dotProduct(ab, ab);
    double t = length2 > 0.0 ? QPointF::dotProduct(p - a, ab) / length2 : 0.0;
    t = std::clamp(t, 0.0, 1.0);
    if (along)
        *along = t;
    const QPointF q = a + ab * t;
    return std::hypot(p.x() - q.x(), p.y() - q.y());
}

// Where the line origin + t * direction crosses the triangle: t, or NaN.
double RayTriangle(const double *origin, const double *direction, const double *tri)
{
    const double e1[3] = {tri[3] - tri[0], tri[4] - tri[1], tri[5] - tri[2]};
    const double e2[3] = {tri[6] - tri[0], tri[7] - tri[1], tri[8] - tri[2]};
    const double p[3] = {direction[1] * e2[2] - direction[2] * e2[1], direction[2] * e2[0] - direction[0] * e2[2],
                         direction[0] * e2[1] - direction[1] * e2[0]};
    const double det = e1[0] * p[0] + e1[1] * p[1] + e1[2] * p[2];
    const double scaleOfEdges = (std::abs(e1[0]) + std::abs(e1[1]) + std::abs(e1[2]))
                                * (std::abs(e2[0]) + std::abs(e2[1]) + std::abs(e2[2]));
    if (!(std::abs(det) > 1e-12 * scaleOfEdges))
        return std::nan("");
    const double inv = 1.0 / det;
    const double s[3] = {origin[0] - tri[0], origin[1] - tri[1], origin[2] - tri[2]};
    const double u = (s[0] * p[0] + s[1] * p[1] + s[2] * p[2]) * inv;
    if (u < 0.0 || u > 1.0)
        return std::nan("");
    const double q[3] = {s[1] * e1[2] - s[2] * e1[1], s[2] * e1[0] - s[0] * e1[2], s[0] * e1[1] - s[1] * e1[0]};
    const double v = (direction[0] * q[0] + direction[1] * q[1] + direction[2] * q[2]) * inv;
    if (v < 0.0 || u + v > 1.0)
        return std::nan("");
    return (e2[0] * q[0] + e2[1] * q[1] + e2[2] * q[2]) * inv;
}

// Whether the line origin + t * direction, t of any sign, crosses the box
// grown by margin; if so, entry is set to the t where it enters.
bool LineCrossesBox(const double *origin, const double *direction, const std::array<double, 6> &box, double margin,
                    double *entry = nullptr)
{
    double low = -Infinity;
    double high = Infinity;
    for (int k = 0; k < 3; ++k) {
        const double lo = box[k] - margin;
        const double hi = box[k + 3] + margin;
        if (std::abs(direction[k]) < 1e-300) {
            if (origin[k] < lo || origin[k] > hi)
                return false;
            continue;
        }
        double t1 = (lo - origin[k]) / direction[k];
        double t2 = (hi - origin[k]) / direction[k];
        if (t1 > t2)
            std::swap(t1, t2);
        low = std::max(low, t1);
        high = std::min(high, t2);
        if (low > high)
            return false;
    }
    if (entry)
        *entry = low;
    return true;
}

} // namespace

SceneClient::SceneClient() = default;

SceneClient::~SceneClient() = default;

const SceneClient::Item *SceneClient::FindItem(const KEZVisObject *object) const
{
    const auto it = m_index.constFind(object);
    return it == m_index.constEnd() ? nullptr : m_items[*it].get();
}

const std::vector<SceneClient::FlatFace> &SceneClient::GetFlatFaces() const
{
    if (!m_flatDirty)
        return m_flatFaces;
    m_flatFaces.clear();
    for (const auto &owned : m_items) {
        const Item &item = *owned;
        if (!item.visible)
            continue;
        for (const Triangle &t : item.triangles) {
            const Style &style = item.styles[t.style];
            const QRgb color = item.state == KEZVisObject::PreSelected ? PreselectedRgb()
                               : item.state == KEZVisObject::Selected  ? SelectedRgb()
                                                                       : style.color.rgba();
            m_flatFaces.push_back({t.xyz.data(), t.normal, color, style.priority, style.depthEnabled, item.order});
        }
    }
    m_flatDirty = false;
    return m_flatFaces;
}

void SceneClient::RequestRedraw()
{
    // Every change of the mirror ends here.
    m_flatDirty = true;
    if (m_batchDepth > 0) {
        m_redrawPending = true;
        return;
    }
    m_redrawPending = false;
    emit RedrawNeeded();
}

void SceneClient::OnEnvironmentChanged(KEZVisEnvironment *environment)
{
    m_selectionEnabled = environment && environment->IsSelectionEnabled();
    RequestRedraw();
}

void SceneClient::OnObjectAdded(KEZVisObject *object)
{
    if (!object || m_index.contains(object))
        return; // an object listed twice is mirrored once
    auto item = std::make_unique<Item>();
    item->object = object;
    item->order = m_nextOrder++;
    item->visible = object->IsVisible();
    item->selectable = object->IsSelectable();
    item->state = object->GetSelectionState();
    ReadGeometry(*item);
    m_index.insert(object, int(m_items.size()));
    m_items.push_back(std::move(item));
    m_hierarchyDirty = true;
    RequestRedraw();
}

void SceneClient::OnObjectRemoved(KEZVisObject *object)
{
    const auto it = m_index.find(object);
    if (it == m_index.end())
        return;
    // The object may be dying: only its address is used from here on.
    const int index = *it;
    m_index.erase(it);
    if (index != int(m_items.size()) - 1) {
        m_items[index] = std::move(m_items.back());
        m_index[m_items[index]->object] = index;
    }
    m_items.pop_back();
    m_hierarchyDirty = true;
    emit ObjectGone(object);
    RequestRedraw();
}

void SceneClient::OnObjectChanged(KEZVisObject *object, KEZVisObject::ChangeTypes changes)
{
    const auto it = m_index.constFind(object);
    if (it == m_index.constEnd())
        return; // removed from the environment but still connected: no longer shown
    Item &item = *m_items[*it];
    if (changes & (KEZVisObject::RepChange | KEZVisObject::PositionChange)) {
        ReadGeometry(item);
        m_hierarchyDirty = true;
    }
    if (changes & (KEZVisObject::VisibilityChange | KEZVisObject::SelectabilityChange)) {
        item.visible = object->IsVisible();
        item.selectable = object->IsSelectable();
        m_hierarchyDirty = true;
    }
    if (changes & KEZVisObject::SelectionStateChange)
        item.state = object->GetSelectionState();
    RequestRedraw();
}

void SceneClient::OnClientChangeRequested(const KEZVisClientChangeRequest &request)
{
    if (request.GetChangeTypes() & KEZVisClientChangeRequest::SelectionEnabledChange)
        m_selectionEnabled = request.IsSelectionEnabled();
    emit ViewRequested(request);
    RequestRedraw();
}

void SceneClient::BeginBatch()
{
    ++m_batchDepth;
}

void SceneClient::EndBatch()
{
    if (m_batchDepth > 0)
        --m_batchDepth;
    if (m_batchDepth == 0 && m_redrawPending)
        RequestRedraw();
}

void SceneClient::OnVisualizationSelectionChanged(const QSet<KEZVisObject *> &, const QSet<KEZVisObject *> &)
{
    RequestRedraw();
}

void SceneClient::OnVisualizationPreselectionChanged(const QSet<KEZVisObject *> &, const QSet<KEZVisObject *> &)
{
    RequestRedraw();
}

void SceneClient::ReadGeometry(Item &item)
{
    item.styles.clear();
    item.triangles.clear();
    item.lines.clear();
    item.points.clear();
    item.texts.clear();
    item.hasBox = false;
    const KEZVisRep *rep = item.object->GetRep();
    if (!rep)
        return;
    QList<const KEZVisPrimitive *> primitives;
    QList<KEZVisOptions> options;
    rep->GetPrimitives(primitives, options);
    const Placement placement(item.object->GetPosition());
    for (int n = 0; n < primitives.size(); ++n) {
        const KEZVisPrimitive *primitive = primitives[n];
        if (!primitive)
            continue;
        const KEZVisOptions option = n < options.size() ? options[n] : KEZVisOptions();
        Style style;
        style.color = option.GetColor();
        style.lineStyle = option.GetLineStyle();
        style.thickness = option.GetLineThickness();
        style.pointSymbol = option.GetPointSymbol();
        style.priority = option.GetPriority();
        style.depthEnabled = option.IsDepthEnabled();
        style.font = option.GetFont();
        const int styleIndex = int(item.styles.size());
        item.styles.push_back(style);

        if (const auto *text = qobject_cast<const KEZVisTextPrimitive *>(primitive)) {
            Text entry;
            entry.text = text->GetText();
            const KEZMathPoint anchor = text->GetAnchor();
            if (!placement.Map(anchor.GetX(), anchor.GetY(), anchor.GetZ(), entry.anchor.data()))
                continue;
            entry.location = text->GetAnchorLocation();
            entry.scalable = text->GetScalability() == KEZVisTextPrimitive::ScalabilityScalable;
            entry.style = styleIndex;
            Grow(item.box, item.hasBox, entry.anchor.data());
            item.texts.push_back(entry);
        } else if (const auto *surface = qobject_cast<const KEZVisSurfacePrimitive *>(primitive)) {
            const QList<double> coords = surface->GetVertexCoordinatesAsDouble();
            const QList<long> indexes = surface->GetTriangleVertexIndexes();
            const long vertexCount = long(coords.size() / 3);
            std::vector<double> world(size_t(vertexCount) * 3);
            std::vector<char> valid(static_cast<size_t>(vertexCount));
            for (long v = 0; v < vertexCount; ++v)
                valid[v] = placement.Map(coords[3 * v], coords[3 * v + 1], coords[3 * v + 2], &world[3 * v]);
            for (qsizetype t = 0; t + 2 < indexes.size(); t += 3) {
                Triangle triangle;
                bool ok = true;
                for (int c = 0; c < 3 && ok; ++c) {
                    const long index = indexes[t + c];
                    ok = index >= 0 && index < vertexCount && valid[index];
                    if (ok)
                        std::copy_n(&world[3 * index], 3, &triangle.xyz[3 * c]);
                }
                if (!ok)
                    continue;
                const double *p = triangle.xyz.data();
                const double e1[3] = {p[3] - p[0], p[4] - p[1], p[5] - p[2]};
                const double e2[3] = {p[6] - p[0], p[7] - p[1], p[8] - p[2]};
                double nx = e1[1] * e2[2] - e1[2] * e2[1];
                double ny = e1[2] * e2[0] - e1[0] * e2[2];
                double nz = e1[0] * e2[1] - e1[1] * e2[0];
                const double length = std::sqrt(nx * nx + ny * ny + nz * nz);
                if (length > 0.0 && std::isfinite(length))
                    triangle.normal = {nx / length, ny / length, nz / length};
                else
                    triangle.normal = {0.0, 0.0, 0.0};
                triangle.style = styleIndex;
                for (int c = 0; c < 3; ++c)
                    Grow(item.box, item.hasBox, &triangle.xyz[3 * c]);
                item.triangles.push_back(triangle);
            }
        } else if (const auto *polyline = qobject_cast<const KEZVisPolylinePrimitive *>(primitive)) {
            const std::vector<double> coords = polyline->GetCoordsAsDouble();
            const bool connected = polyline->GetStructure() == KEZVisPolylinePrimitive::StructureConnected;
            // A non-finite point breaks a connected line in two and drops the
            // segment that it belongs to.
            Line line{{}, connected, styleIndex};
            auto flush = [&]() {
                if (line.xyz.size() >= 6)
                    item.lines.push_back(line);
                line.xyz.clear();
            };
            const size_t count = coords.size() / 3;
            for (size_t v = 0; v < count; ++v) {
                double p[3];
                const bool ok = placement.Map(coords[3 * v], coords[3 * v + 1], coords[3 * v + 2], p);
                if (connected) {
                    if (!ok) {
                        flush();
                        continue;
                    }
                    line.xyz.insert(line.xyz.end(), p, p + 3);
                    Grow(item.box, item.hasBox, p);
                } else if (v % 2 == 1) {
                    double a[3];
                    if (ok && placement.Map(coords[3 * v - 3], coords[3 * v - 2], coords[3 * v - 1], a)) {
                        line.xyz.insert(line.xyz.end(), a, a + 3);
                        line.xyz.insert(line.xyz.end(), p, p + 3);
                        Grow(item.box, item.hasBox, a);
                        Grow(item.box, item.hasBox, p);
                    }
                }
            }
            flush();
        } else if (const auto *points = qobject_cast<const KEZVisPointPrimitive *>(primitive)) {
            const std::vector<double> coords = points->GetCoordsAsDouble();
            Points entry{{}, styleIndex};
            for (size_t v = 0; v + 2 < coords.size(); v += 3) {
                double p[3];
                if (placement.Map(coords[v], coords[v + 1], coords[v + 2], p)) {
                    entry.xyz.insert(entry.xyz.end(), p, p + 3);
                    Grow(item.box, item.hasBox, p);
                }
            }
            if (!entry.xyz.empty())
                item.points.push_back(std::move(entry));
        }
    }
}

bool SceneClient::GetSceneBox(KEZMathBoundingBox &box) const
{
    bool any = false;
    for (const auto &item : m_items) {
        if (!item->visible || !item->hasBox)
            continue;
        const KEZMathBoundingBox itemBox(KEZMathPoint(item->box[0], item->box[1], item->box[2]),
                                         KEZMathPoint(item->box[3], item->box[4], item->box[5]));
        if (any) {
            box.Expand(itemBox);
        } else {
            box = itemBox;
            any = true;
        }
    }
    return any;
}

void SceneClient::BuildHierarchy()
{
    m_leaves.clear();
    m_nodes.clear();
    for (const auto &item : m_items) {
        if (item->visible && item->selectable && item->hasBox)
            m_leaves.push_back(item.get());
    }
    if (!m_leaves.empty()) {
        m_nodes.reserve(2 * m_leaves.size() / 4 + 1);
        BuildNode(0, int(m_leaves.size()), 0);
    }
    // The boxes of the leaves side by side in the order of the hierarchy, so
    // that a walk reads them from one block of memory and touches an item
    // only when its box is crossed.
    m_leafBoxes.resize(m_leaves.size());
    m_leafThin.resize(m_leaves.size());
    for (size_t n = 0; n < m_leaves.size(); ++n) {
        m_leafBoxes[n] = m_leaves[n]->box;
        m_leafThin[n] = !m_leaves[n]->lines.empty() || !m_leaves[n]->points.empty();
    }
    m_hierarchyDirty = false;
}

int SceneClient::BuildNode(int first, int count, int depth)
{
    const int index = int(m_nodes.size());
    m_nodes.push_back(Node{});
    std::array<double, 6> box = m_leaves[first]->box;
    bool thin = false;
    for (int n = first; n < first + count; ++n)
        thin = thin || !m_leaves[n]->lines.empty() || !m_leaves[n]->points.empty();
    for (int n = first + 1; n < first + count; ++n) {
        const auto &b = m_leaves[n]->box;
        for (int k = 0; k < 3; ++k) {
            box[k] = std::min(box[k], b[k]);
            box[k + 3] = std::max(box[k + 3], b[k + 3]);
        }
    }
    constexpr int leafSize = 4;
    if (count <= leafSize || depth > 60) {
        m_nodes[index] = Node{box, first, count, -1, thin};
        return index;
    }
    // Split at the median of the box centres along the longest side.
    int axis = 0;
    for (int k = 1; k < 3; ++k) {
        if (box[k + 3] - box[k] > box[axis + 3] - box[axis])
            axis = k;
    }
    const int half = count / 2;
    std::nth_element(m_leaves.begin() + first, m_leaves.begin() + first + half, m_leaves.begin() + first + count,
                     [axis](const Item *a, const Item *b) {
                         return a->box[axis] + a->box[axis + 3] < b->box[axis] + b->box[axis + 3];
                     });
    const int left = BuildNode(first, half, depth + 1);
    const int right = BuildNode(first + half, count - half, depth + 1);
    m_nodes[index] = Node{box, left, 0, right, thin};
    return index;
}

int SceneClient::GetHierarchySize()
{
    if (m_hierarchyDirty)
        BuildHierarchy();
    return int(m_nodes.size());
}

void SceneClient::Candidates(const ViewCamera &camera, const QPointF &screenPoint, double margin,
                             std::vector<Item *> &items)
{
    if (m_hierarchyDirty)
        BuildHierarchy();
    if (m_nodes.empty())
        return;
    double origin[3];
    camera.FromScreen(screenPoint, 0.0).GetCoord(origin[0], origin[1], origin[2]);
    double direction[3];
    camera.GetDirection().GetCoord(direction[0], direction[1], direction[2]);
    std::vector<int> stack{0};
    while (!stack.empty()) {
        const Node &node = m_nodes[stack.back()];
        stack.pop_back();
        if (!LineCrossesBox(origin, direction, node.box, margin))
            continue;
        if (node.count > 0) {
            for (int n = node.first; n < node.first + node.count; ++n) {
                if (LineCrossesBox(origin, direction, m_leafBoxes[n], margin))
                    items.push_back(m_leaves[n]);
            }
        } else {
            stack.push_back(node.right);
            stack.push_back(node.first);
        }
    }
}

SceneClient::Hit SceneClient::Pick(const ViewCamera &camera, const QPointF &screenPoint)
{
    Hit hit;
    if (m_hierarchyDirty)
        BuildHierarchy();
    if (m_nodes.empty())
        return hit;
    const double margin = PickRadius / camera.GetScale();
    double origin[3];
    camera.FromScreen(screenPoint, 0.0).GetCoord(origin[0], origin[1], origin[2]);
    double direction[3];
    camera.GetDirection().GetCoord(direction[0], direction[1], direction[2]);

    double bestDepth = Infinity;
    int bestKind = 4;
    quint64 bestOrder = 0;
    auto tolerance = [](double depth) { return 1e-9 * (1.0 + std::abs(depth)); };
    // Nearest to the eye wins; at the same depth a point beats a line and a
    // line beats a face, and then the object added first.
    auto offer = [&](Item *item, double depth, int kind, const KEZMathPoint &point) {
        const bool better = depth < bestDepth - tolerance(depth)
                            || (std::abs(depth - bestDepth) <= tolerance(depth)
                                && (kind < bestKind || (kind == bestKind && item->order < bestOrder)));
        if (!better)
            return;
        bestDepth = depth;
        bestKind = kind;
        bestOrder = item->order;
        hit.object = item->object;
        hit.point = point;
        hit.kind = kind;
    };
    auto test = [&](Item *item) {
        for (const Triangle &triangle : item->triangles) {
            const double t = RayTriangle(origin, direction, triangle.xyz.data());
            if (std::isfinite(t)) {
                const KEZMathPoint point(origin[0] + direction[0] * t, origin[1] + direction[1] * t,
                                         origin[2] + direction[2] * t);
                offer(item, t, 3, point);
            }
        }
        for (const Line &line : item->lines) {
            const size_t count = line.xyz.size() / 3;
            const size_t step = line.connected ? 1 : 2;
            for (size_t v = 0; v + 1 < count; v += step) {
                const double *a = &line.xyz[3 * v];
                const double *b = &line.xyz[3 * v + 3];
                double along = 0.0;
                if (SegmentDistance(screenPoint, camera.ToScreen(a), camera.ToScreen(b), &along) <= PickRadius) {
                    const KEZMathPoint point(a[0] + (b[0] - a[0]) * along, a[1] + (b[1] - a[1]) * along,
                                             a[2] + (b[2] - a[2]) * along);
                    offer(item, camera.Depth(point), 2, point);
                }
            }
        }
        for (const Points &points : item->points) {
            for (size_t v = 0; v + 2 < points.xyz.size(); v += 3) {
                const double *p = &points.xyz[v];
                const QPointF s = camera.ToScreen(p);
                if (std::hypot(s.x() - screenPoint.x(), s.y() - screenPoint.y()) <= PickRadius)
                    offer(item, camera.Depth(p), 1, KEZMathPoint(p[0], p[1], p[2]));
            }
        }
    };

    // Front to back through the hierarchy: the nearer child first, and a box
    // that the line of sight enters behind the best hit so far is skipped,
    // since nothing in it can be nearer.
    std::vector<std::pair<double, int>> stack;
    double entry = 0.0;
    // Faces are hit only under the cursor: the margin of the pick radius is
    // needed only around boxes that hold lines or points.
    auto marginOf = [margin](bool thin) { return thin ? margin : 0.0; };
    if (LineCrossesBox(origin, direction, m_nodes[0].box, marginOf(m_nodes[0].thin), &entry))
        stack.emplace_back(entry, 0);
    while (!stack.empty()) {
        const auto [nodeEntry, index] = stack.back();
        stack.pop_back();
        if (nodeEntry > bestDepth + tolerance(bestDepth))
            continue;
        const Node &node = m_nodes[index];
        if (node.count > 0) {
            for (int n = node.first; n < node.first + node.count; ++n) {
                if (LineCrossesBox(origin, direction, m_leafBoxes[n], marginOf(m_leafThin[n]), &entry)
                    && entry <= bestDepth + tolerance(bestDepth))
                    test(m_leaves[n]);
            }
            continue;
        }
        double leftEntry = 0.0;
        double rightEntry = 0.0;
        const Node &leftNode = m_nodes[node.first];
        const Node &rightNode = m_nodes[node.right];
        const bool left = LineCrossesBox(origin, direction, leftNode.box, marginOf(leftNode.thin), &leftEntry);
        const bool right = LineCrossesBox(origin, direction, rightNode.box, marginOf(rightNode.thin), &rightEntry);
        if (left && right) {
            if (leftEntry <= rightEntry) {
                stack.emplace_back(rightEntry, node.right);
                stack.emplace_back(leftEntry, node.first);
            } else {
                stack.emplace_back(leftEntry, node.first);
                stack.emplace_back(rightEntry, node.right);
            }
        } else if (left) {
            stack.emplace_back(leftEntry, node.first);
        } else if (right) {
            stack.emplace_back(rightEntry, node.right);
        }
    }
    return hit;
}

SceneClient::Snap SceneClient::SnapAt(const ViewCamera &camera, const QPointF &screenPoint)
{
    Snap snap;
    std::vector<Item *> candidates;
    Candidates(camera, screenPoint, SnapRadius / camera.GetScale(), candidates);
    double bestVertex = SnapRadius;
    double bestEdge = SnapRadius;
    auto vertex = [&](const double *p) {
        const QPointF s = camera.ToScreen(p);
        const double distance = std::hypot(s.x() - screenPoint.x(), s.y() - screenPoint.y());
        if (distance <= bestVertex && (!snap.hasPoint || distance < bestVertex)) {
            bestVertex = distance;
            snap.hasPoint = true;
            snap.point = KEZMathPoint(p[0], p[1], p[2]);
        }
    };
    auto edge = [&](const double *a, const double *b) {
        const KEZMathVector axis(b[0] - a[0], b[1] - a[1], b[2] - a[2]);
        if (!axis.IsValid())
            return;
        const double distance = SegmentDistance(screenPoint, camera.ToScreen(a), camera.ToScreen(b), nullptr);
        if (distance <= bestEdge && (!snap.hasAxis || distance < bestEdge)) {
            bestEdge = distance;
            snap.hasAxis = true;
            snap.axis = axis.Normalized();
        }
    };
    for (Item *item : candidates) {
        for (const Triangle &triangle : item->triangles) {
            const double *p = triangle.xyz.data();
            vertex(p);
            vertex(p + 3);
            vertex(p + 6);
            edge(p, p + 3);
            edge(p + 3, p + 6);
            edge(p + 6, p);
        }
        for (const Line &line : item->lines) {
            const size_t count = line.xyz.size() / 3;
            for (size_t v = 0; v < count; ++v)
                vertex(&line.xyz[3 * v]);
            const size_t step = line.connected ? 1 : 2;
            for (size_t v = 0; v + 1 < count; v += step)
                edge(&line.xyz[3 * v], &line.xyz[3 * v + 3]);
        }
        for (const Points &points : item->points) {
            for (size_t v = 0; v + 2 < points.xyz.size(); v += 3)
                vertex(&points.xyz[v]);
        }
    }
    return snap;
}
