#ifndef KEZVIEWER_SCENECLIENT_H
#define KEZVIEWER_SCENECLIENT_H

// The viewer's client: it mirrors one environment into flat lists of world
// coordinates that can be drawn and picked quickly, follows the environment's
// batches so that a batch ends in one redraw, and passes the environment's
// view requests on.

#include "ViewCamera.h"

#include <KEZVisClient.h>
#include <KEZVisClientChangeRequest.h>
#include <KEZVisObject.h>
#include <KEZVisOptions.h>
#include <KEZVisTextPrimitive.h>

#include <QColor>
#include <QFont>
#include <QHash>
#include <QPointF>
#include <QString>

#include <array>
#include <memory>
#include <vector>

class SceneClient : public KEZVisClient
{
    Q_OBJECT
public:
    // The look of one primitive, as far as the viewer draws it.
    struct Style
    {
        QColor color;
        int lineStyle = 0;
        double thickness = 1.0;
        int pointSymbol = 0;
        int priority = 0;
        bool depthEnabled = true;
        QFont font;
    };

    struct Triangle
    {
        std::array<double, 9> xyz; // three corners in world coordinates
        std::array<double, 3> normal; // unit normal; zero when the triangle is degenerate
        int style;
    };

    // A polyline as separate segments (pairs of points) or one connected line.
    struct Line
    {
        std::vector<double> xyz;
        bool connected;
        int style;
    };

    struct Points
    {
        std::vector<double> xyz;
        int style;
    };

    struct Text
    {
        QString text;
        std::array<double, 3> anchor;
        KEZVisTextPrimitive::AnchorLocation location;
        bool scalable;
        int style;
    };

    // Everything the viewer keeps of one object. Only finite coordinates are
    // kept: a primitive with a NaN or infinite coordinate loses the triangles,
    // segments or points that use it, the rest is shown.
    struct Item
    {
        KEZVisObject *object = nullptr;
        quint64 order = 0; // order of addition, to draw ties the same way every time
        bool visible = true;
        bool selectable = false;
        KEZVisObject::SelectionState state = KEZVisObject::NotSelected;
        std::vector<Style> styles;
        std::vector<Triangle> triangles;
        std::vector<Line> lines;
        std::vector<Points> points;
        std::vector<Text> texts;
        bool hasBox = false;
        std::array<double, 6> box{}; // lower x, y, z, upper x, y, z of the kept coordinates
    };

    // What lies under a screen point.
    struct Hit
    {
        KEZVisObject *object = nullptr;
        KEZMathPoint point; // on the object, in world coordinates
        int kind = 0; // 0 none, 1 vertex, 2 edge or line, 3 face
    };

    // The nearest vertex and edge within the snap radius.
    struct Snap
    {
        bool hasPoint = false;
        KEZMathPoint point;
        bool hasAxis = false;
        KEZMathVector axis;
    };

    // A face of a visible item, with what drawing needs of its item, kept
    // side by side for all items so that a frame reads one block of memory.
    struct FlatFace
    {
        const double *xyz; // the triangle's corners, owned by its item
        std::array<double, 3> normal;
        QRgb color; // the face's colour, or the colour of its item's selection state
        int priority;
        bool depthEnabled;
        quint64 order;
    };

    // Pixels around a point or a line within which the mouse hits it.
    static constexpr double PickRadius = 4.0;
    // Pixels around a vertex or an edge within which the mouse snaps to it.
    static constexpr double SnapRadius = 8.0;

    SceneClient();
    ~SceneClient() override;

    const std::vector<std::unique_ptr<Item>> &GetItems() const { return m_items; }
    const Item *FindItem(const KEZVisObject *object) const;
    bool IsSelectionEnabled() const { return m_selectionEnabled; }
    bool IsInBatch() const { return m_batchDepth > 0; }

    // The faces of all visible items, rebuilt after any change.
    const std::vector<FlatFace> &GetFlatFaces() const;
    // The colours in which selected and preselected items are drawn.
    static QRgb SelectedRgb() { return qRgb(255, 140, 0); }
    static QRgb PreselectedRgb() { return qRgb(0, 160, 255); }

    // The box around every visible item; false when there is none.
    bool GetSceneBox(KEZMathBoundingBox &box) const;

    // The visible, selectable object nearest to the eye under \a screenPoint.
    // Faces are hit under the cursor, points and lines within PickRadius.
    Hit Pick(const ViewCamera &camera, const QPointF &screenPoint);
    // The nearest vertex and the nearest edge of visible, selectable objects
    // within SnapRadius of \a screenPoint.
    Snap SnapAt(const ViewCamera &camera, const QPointF &screenPoint);

    // The number of leaves and nodes of the hierarchy of boxes, rebuilt on
    // demand after a change.
    int GetHierarchySize();

signals:
    // The mirror changed; sent once at the end of a batch, never inside one.
    void RedrawNeeded();
    // The environment asked for something of the view.
    void ViewRequested(const KEZVisClientChangeRequest &request);
    // An object left the mirror: whoever holds its pointer drops it now.
    void ObjectGone(KEZVisObject *object);

protected:
    void OnEnvironmentChanged(KEZVisEnvironment *environment) override;
    void OnObjectAdded(KEZVisObject *object) override;
    void OnObjectRemoved(KEZVisObject *object) override;
    void OnObjectChanged(KEZVisObject *object, KEZVisObject::ChangeTypes changes) override;
    void OnClientChangeRequested(const KEZVisClientChangeRequest &request) override;
    void BeginBatch() override;
    void EndBatch() override;
    void OnVisualizationSelectionChanged(const QSet<KEZVisObject *> &selected,
                                         const QSet<KEZVisObject *> &deselected) override;
    void OnVisualizationPreselectionChanged(const QSet<KEZVisObject *> &oldSelection,
                                            const QSet<KEZVisObject *> &newSelection) override;

private:
    struct Node
    {
        std::array<double, 6> box;
        int first; // leaves: index into m_leaves; inner nodes: left child
        int count; // leaves: number of items; inner nodes: 0
        int right; // inner nodes: right child
        bool thin; // holds lines or points, which are hit within the pick radius
    };

    void RequestRedraw();
    void ReadGeometry(Item &item);
    void BuildHierarchy();
    int BuildNode(int first, int count, int depth);
    // Items whose box, grown by \a margin, is crossed by the line of sight
    // through \a screenPoint.
    void Candidates(const ViewCamera &camera, const QPointF &screenPoint, double margin,
                    std::vector<Item *> &items);

    std::vector<std::unique_ptr<Item>> m_items;
    QHash<const KEZVisObject *, int> m_index;
    quint64 m_nextOrder = 0;
    int m_batchDepth = 0;
    bool m_redrawPending = false;
    bool m_selectionEnabled = false;

    bool m_hierarchyDirty = true;
    mutable bool m_flatDirty = true;
    mutable std::vector<FlatFace> m_flatFaces;

    std::vector<Item *> m_leaves;
    std::vector<std::array<double, 6>> m_leafBoxes;
    std::vector<char> m_leafThin;
    std::vector<Node> m_nodes;
};

#endif // KEZVIEWER_SCENECLIENT_H
