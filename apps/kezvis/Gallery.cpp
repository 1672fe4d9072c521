#include "Gallery.h"

#include "Wireframe.h"

#include <KEZVisOptions.h>
#include <KEZVisPointPrimitive.h>
#include <KEZVisPolylinePrimitive.h>
#include <KEZVisRepExtraSet.h>
#include <KEZVisRepFactory.h>
#include <KEZVisRepGraphics.h>
#include <KEZVisRepSet.h>
#include <KEZVisTextPrimitive.h>
#include <KEZVisVectorFont.h>
#include <KEZVisVectorText.h>

#include <KEZGeoComboCurve.h>
#include <KEZGeoComboPoint.h>
#include <KEZGeoSurface.h>
#include <KEZTopEdge.h>
#include <KEZTopFace.h>
#include <KEZTopVertex.h>

#include <KEZMathPoint.h>
#include <KEZMathSetOfPoints.h>
#include <KEZMathVector.h>

#include <QFile>
#include <QFont>
#include <QTextStream>

#include <cmath>

namespace {

const double pi = 3.141592653589793;

KEZVisOptions Style(const QColor &color, double thickness = 1.0, int lineStyle = 0, int priority = 1)
{
    KEZVisOptions options;
    options.SetColor(color);
    options.SetLineThickness(thickness);
    options.SetLineStyle(static_cast<KEZVisOptions::LineStyle>(lineStyle));
    options.SetPriority(priority);
    return options;
}

KEZVisOptions LabelStyle(int pointSize)
{
    KEZVisOptions options = Style(QColor(20, 20, 20));
    options.SetFont(QFont(QStringLiteral("DejaVu Sans"), pointSize));
    return options;
}

KEZVisRep *Polyline(const KEZMathSetOfPoints &points, const KEZVisOptions &options, bool separate = false)
{
    return new KEZVisRepGraphics(
        QList<const KEZVisPrimitive *>{new KEZVisPolylinePrimitive(
            points, separate ? KEZVisPolylinePrimitive::StructureSeparateSegments
                             : KEZVisPolylinePrimitive::StructureConnected)},
        options);
}

KEZVisRep *Text(const QString &text, const KEZMathPoint &anchor, int location, const KEZVisOptions &options)
{
    return new KEZVisRepGraphics(
        QList<const KEZVisPrimitive *>{new KEZVisTextPrimitive(
            text, anchor, static_cast<KEZVisTextPrimitive::AnchorLocation>(location),
            KEZVisTextPrimitive::ScalabilityScalable)},
        options);
}

KEZMathSetOfPoints Circle(double cx, double cy, double radius, int count, bool closed = true)
{
    KEZMathSetOfPoints points;
    for (int n = 0; n < count; ++n) {
        const double angle = 2.0 * pi * n / count;
        points.append(KEZMathPoint(cx + radius * std::cos(angle), cy + radius * std::sin(angle), 0.0));
    }
    if (closed)
        points.append(points.first());
    return points;
}

KEZMathSetOfPoints Rectangle(double x0, double y0, double x1, double y1)
{
    KEZMathSetOfPoints points;
    points << KEZMathPoint(x0, y0, 0) << KEZMathPoint(x1, y0, 0) << KEZMathPoint(x1, y1, 0) << KEZMathPoint(x0, y1, 0)
           << KEZMathPoint(x0, y0, 0);
    return points;
}

// The outline that the filled-polygon panels show, compiled into the program.
KEZMathSetOfPoints ReadOutline()
{
    KEZMathSetOfPoints points;
    QFile file(QStringLiteral(":/kezvis/outline.dat"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return points;
    QTextStream in(&file);
    while (!in.atEnd()) {
        const QStringList fields = in.readLine().split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (fields.size() == 2)
            points.append(KEZMathPoint(fields[0].toDouble(), fields[1].toDouble(), 0.0));
    }
    return points;
}

// The outline fitted into the square (x0, y0) to (x0 + side, y0 + side).
KEZMathSetOfPoints Fitted(const KEZMathSetOfPoints &points, double x0, double y0, double side)
{
    double minX = 1e300, minY = 1e300, maxX = -1e300, maxY = -1e300;
    for (const KEZMathPoint &point : points) {
        minX = std::min(minX, point.GetX());
        maxX = std::max(maxX, point.GetX());
        minY = std::min(minY, point.GetY());
        maxY = std::max(maxY, point.GetY());
    }
    const double scale = side / std::max(maxX - minX, maxY - minY);
    KEZMathSetOfPoints fitted;
    for (const KEZMathPoint &point : points)
        fitted.append(KEZMathPoint(x0 + (point.GetX() - minX) * scale, y0 + (point.GetY() - minY) * scale, 0.0));
    return fitted;
}

// Whether (x, y) lies inside the ring, by the crossing count.
bool Inside(const KEZMathSetOfPoints &ring, double x, double y)
{
    bool inside = false;
    for (qsizetype i = 0, j = ring.size() - 1; i < ring.size(); j = i++) {
        const KEZMathPoint &a = ring[i];
        const KEZMathPoint &b = ring[j];
        if ((a.GetY() > y) != (b.GetY() > y)
            && x < (b.GetX() - a.GetX()) * (y - a.GetY()) / (b.GetY() - a.GetY()) + a.GetX())
            inside = !inside;
    }
    return inside;
}

double DistanceToRing(const KEZMathSetOfPoints &ring, double x, double y)
{
    double best = 1e300;
    for (qsizetype i = 0, j = ring.size() - 1; i < ring.size(); j = i++) {
        const double ax = ring[j].GetX(), ay = ring[j].GetY();
        const double dx = ring[i].GetX() - ax, dy = ring[i].GetY() - ay;
        const double length2 = dx * dx + dy * dy;
        double t = length2 > 0 ? ((x - ax) * dx + (y - ay) * dy) / length2 : 0.0;
        t = std::clamp(t, 0.0, 1.0);
        best = std::min(best, std::hypot(x - ax - t * dx, y - ay - t * dy));
    }
    return best;
}

// Small round holes on a grid, where they fit well inside the outline.
QList<KEZMathSetOfPoints> HolesIn(const KEZMathSetOfPoints &outline, double x0, double y0, double side)
{
    QList<KEZMathSetOfPoints> holes;
    const double radius = side / 30.0;
    for (double y = y0 + side / 12; y < y0 + side; y += side / 7)
        for (double x = x0 + side / 12; x < x0 + side; x += side / 7)
            if (Inside(outline, x, y) && DistanceToRing(outline, x, y) > 2.5 * radius)
                holes.append(Circle(x, y, radius, 16, false));
    return holes;
}

// Vector text of \a size on the xy plane, anchored at \a at.
KEZVisVectorText VectorText(const QString &text, const KEZMathPoint &at, double size,
                            KEZVisVectorText::Anchor anchor = KEZVisVectorText::BottomLeft)
{
    KEZVisVectorText vector(text, KEZVisVectorFont());
    vector.SetTextSize(size);
    vector.SetLineSpacing(0.6 * size);
    vector.SetAnchor(anchor);
    KEZMathPlane plane;
    plane.SetOrigin(at);
    vector.SetPlane(plane);
    return vector;
}

// Builds the reps of one panel, whose lower left corner is (x, y).
class PanelBuilder
{
public:
    PanelBuilder(double x, double y) : m_x(x), m_y(y) {}

    KEZMathPoint At(double u, double v, double w = 0.0) const { return KEZMathPoint(m_x + u, m_y + v, w); }
    double X() const { return m_x; }
    double Y() const { return m_y; }

    void Add(KEZVisRep *rep) { m_reps.append(rep); }

    // A surface rep and, for the 2D pictures that do not draw surfaces, the
    // wireframe of its triangles seen obliquely from above.
    void AddSolid(KEZVisRep *rep, const QColor &edgeColor)
    {
        Add(rep);
        Add(WireframeOf(*rep, Style(edgeColor, 0.6)));
    }

    KEZMathSetOfPoints Points(std::initializer_list<std::pair<double, double>> uv) const
    {
        KEZMathSetOfPoints points;
        for (const auto &[u, v] : uv)
            points.append(At(u, v));
        return points;
    }

    KEZVisRep *Finish(const QString &title)
    {
        m_reps.prepend(Polyline(Rectangle(m_x, m_y, m_x + Gallery::panelSide, m_y + Gallery::panelSide),
                                Style(QColor(170, 170, 170), 1.0, 0, 0)));
        // Centred by its drawn strokes: the layout's own middle anchor goes by
        // the measured width, which is wider than what is drawn.
        KEZVisVectorText label = VectorText(title, At(0, Gallery::panelSide - 6), 9.0, KEZVisVectorText::TopLeft);
        double left = 1e300, right = -1e300;
        for (const KEZMathSetOfPoints &stroke : label.GetPolylines())
            for (const KEZMathPoint &point : stroke) {
                left = std::min(left, point.GetX());
                right = std::max(right, point.GetX());
            }
        if (left <= right)
            label = VectorText(title, At(Gallery::panelSide / 2 - (right - left) / 2 - (left - m_x), Gallery::panelSide - 6),
                               9.0, KEZVisVectorText::TopLeft);
        m_reps.append(label.CreateRep(Style(QColor(20, 20, 20), 1.2), false, 0.0));
        return new KEZVisRepSet(m_reps);
    }

private:
    double m_x;
    double m_y;
    QList<const KEZVisRep *> m_reps;
};

void BuildPolylinesAndPlanes(PanelBuilder &panel)
{
    panel.Add(KEZVisRepFactory::CreatePolylineRep(
        panel.Points({{15, 150}, {45, 120}, {75, 155}, {105, 115}, {135, 150}, {185, 120}}), Style(Qt::darkBlue, 2.0)));
    KEZVisRep *plane = KEZVisRepFactory::CreatePlaneRep(panel.Points({{20, 20}, {90, 20}, {90, 90}, {20, 90}}),
                                                       KEZMathVector(0, 0, 1), Style(QColor(120, 160, 220)),
                                                       Style(Qt::darkGreen, 2.0));
    panel.AddSolid(plane, QColor(120, 160, 220));
    panel.Add(KEZVisRepFactory::CreatePlaneBoundaryEdgesRep(
        panel.Points({{140, 20}, {180, 45}, {170, 95}, {115, 95}, {105, 45}}), Style(Qt::darkRed, 2.0)));
}

void BuildRegularSolids(PanelBuilder &panel)
{
    const KEZMathVector tilted(0.3, 0.5, 1.0);
    panel.AddSolid(KEZVisRepFactory::CreatePolygonRep(panel.At(50, 130), KEZMathVector(0, 0, 1), 35, 7,
                                                      Style(Qt::darkCyan)),
                   Qt::darkCyan);
    panel.AddSolid(KEZVisRepFactory::CreatePrismRep(panel.At(135, 115), tilted, 30, 45, 8, Style(Qt::darkMagenta)),
                   Qt::darkMagenta);
    panel.AddSolid(KEZVisRepFactory::CreatePyramidRep(panel.At(70, 25), tilted, 35, 60, 6, Style(Qt::darkYellow)),
                   QColor(150, 120, 0));
}

void BuildSphere(PanelBuilder &panel)
{
    panel.AddSolid(KEZVisRepFactory::CreateSphereRep(panel.At(95, 85), 65, 14, Style(Qt::darkBlue)), QColor(40, 60, 160));
}

void BuildArrowsAxisOrigin(PanelBuilder &panel)
{
    panel.AddSolid(KEZVisRepFactory::CreateArrowRep(panel.At(20, 30), KEZMathVector(1, 0.6, 0.4), 90, 4, 30, 10, 12,
                                                    Style(Qt::darkRed)),
                   Qt::darkRed);
    panel.AddSolid(KEZVisRepFactory::CreateArrowRep(panel.At(30, 150), KEZMathVector(1, -0.2, 0.3), 130,
                                                    Style(Qt::darkGreen), 12, 0.05, 0.12, 0.75),
                   Qt::darkGreen);
    panel.Add(KEZVisRepFactory::CreateAxisRep(panel.At(110, 20), KEZMathVector(0.5, 1, 0), 110,
                                              Style(Qt::black, 1.5, 3)));
    KEZVisOptions origin = Style(Qt::red, 8.0);
    origin.SetPointSymbol(KEZVisOptions::PointSymbolMarker);
    panel.Add(KEZVisRepFactory::CreateOirginRep(panel.At(110, 20), origin));
}

void BuildLineStyles(PanelBuilder &panel)
{
    for (int style = 0; style <= 12; ++style) {
        const double v = 165 - style * 12.5;
        panel.Add(Polyline(panel.Points({{40, v}, {190, v}}), Style(QColor(30, 30, 30), 1.5, style)));
        panel.Add(Text(QString::number(style), panel.At(30, v), 7, LabelStyle(7)));
    }
}

void BuildThicknesses(PanelBuilder &panel)
{
    const double thicknesses[] = {0.25, 0.5, 1, 2, 3, 4, 6, 8, 10};
    for (int n = 0; n < 9; ++n) {
        const double u = 20 + n * 20;
        panel.Add(Polyline(panel.Points({{u, 20}, {u + 8, 160}}),
                           Style(QColor::fromHsv(n * 40, 220, 180), thicknesses[n])));
    }
}

void BuildPoints(PanelBuilder &panel)
{
    for (int row = 0; row < 5; ++row)
        for (int column = 0; column < 6; ++column) {
            KEZMathSetOfPoints point;
            point.append(panel.At(25 + column * 30, 25 + row * 30));
            panel.Add(new KEZVisRepGraphics(QList<const KEZVisPrimitive *>{new KEZVisPointPrimitive(point)},
                                            Style(QColor::fromHsv((row * 6 + column) * 12, 230, 200), 3 + row * 2)));
        }
}

void BuildFilledPolygon(PanelBuilder &panel, const KEZMathSetOfPoints &source)
{
    const KEZMathSetOfPoints outline = Fitted(source, panel.X() + 15, panel.Y() + 10, 165);
    const QList<KEZMathSetOfPoints> holes = HolesIn(outline, panel.X() + 15, panel.Y() + 10, 165);
    QList<KEZMathSetOfPoints> rings{outline};
    rings.append(holes);
    KEZVisRep *filled = KEZVisRepFactory::CreateFilledPolygonRep(rings, Style(QColor(90, 150, 90)), 0.0, false);
    if (filled)
        panel.AddSolid(filled, QColor(90, 150, 90));
    // The outline and holes as closed lines under an extra set, whose colour
    // fills them in the SVG picture.
    KEZMathSetOfPoints closedOutline = outline;
    closedOutline.append(outline.first());
    QList<const KEZVisRep *> boundary{Polyline(closedOutline, Style(Qt::darkGreen, 1.5))};
    for (KEZMathSetOfPoints hole : holes) {
        hole.append(hole.first());
        boundary.append(Polyline(hole, Style(Qt::darkRed, 1.0)));
    }
    panel.Add(new KEZVisRepExtraSet(boundary, Style(QColor(200, 235, 200))));
}

void BuildExtrudedPolygon(PanelBuilder &panel, const KEZMathSetOfPoints &source)
{
    const KEZMathSetOfPoints outline = Fitted(source, panel.X() + 20, panel.Y() + 15, 120);
    QList<KEZMathSetOfPoints> rings{outline};
    rings.append(HolesIn(outline, panel.X() + 20, panel.Y() + 15, 120));
    KEZVisRep *solid = KEZVisRepFactory::CreateFilledPolygonRep(rings, Style(QColor(160, 110, 60)), 50.0, true);
    if (solid)
        panel.AddSolid(solid, QColor(160, 110, 60));
}

void BuildTextPrimitives(PanelBuilder &panel)
{
    const char *names[] = {"BL", "L", "TL", "B", "C", "T", "BR", "R", "TR"};
    for (int location = 0; location <= 8; ++location) {
        const double u = 40 + (location / 3) * 60;
        const double v = 40 + (location % 3) * 50;
        KEZMathSetOfPoints mark;
        mark.append(panel.At(u, v));
        panel.Add(new KEZVisRepGraphics(QList<const KEZVisPrimitive *>{new KEZVisPointPrimitive(mark)},
                                        Style(Qt::red, 5)));
        panel.Add(Text(QString::fromLatin1(names[location]), panel.At(u, v), location, LabelStyle(9)));
    }
}

// A cube turned so that its depth shows from above, as a body of the
// topology family: 8 vertices, 12 edges, 6 faces of two triangles each.
void BuildBody(PanelBuilder &panel, KEZTopBody *body)
{
    const double cosX = std::cos(0.5), sinX = std::sin(0.5), cosY = std::cos(0.35), sinY = std::sin(0.35);
    auto corner = [&](int n) {
        const double x = (n & 1 ? 1 : -1) * 50.0, y = (n & 2 ? 1 : -1) * 50.0, z = (n & 4 ? 1 : -1) * 50.0;
        const double y1 = y * cosX - z * sinX, z1 = y * sinX + z * cosX;
        const double x2 = x * cosY + z1 * sinY, z2 = -x * sinY + z1 * cosY;
        return panel.At(95 + x2, 85 + y1, z2);
    };
    QList<const KEZTopVertex *> vertices;
    for (int n = 0; n < 8; ++n) {
        vertices.append(new KEZTopVertex(new KEZGeoComboPoint(corner(n), body)));
        body->AddEntity(0, const_cast<KEZTopVertex *>(vertices.last()));
    }
    for (int a = 0; a < 8; ++a)
        for (int bit : {1, 2, 4})
            if (!(a & bit)) {
                KEZMathSetOfPoints ends;
                ends << corner(a) << corner(a | bit);
                body->AddEntity(1, new KEZTopEdge(new KEZGeoComboCurve(ends, false, body)));
            }
    const int faces[6][4] = {{0, 1, 3, 2}, {4, 6, 7, 5}, {0, 4, 5, 1}, {2, 3, 7, 6}, {0, 2, 6, 4}, {1, 5, 7, 3}};
    for (const auto &face : faces) {
        KEZMathSetOfPoints corners;
        for (int n : face)
            corners << corner(n);
        body->AddEntity(2, new KEZTopFace(new KEZGeoSurface(corners, {0, 1, 2, 0, 2, 3}, body)));
    }
    panel.Add(KEZVisRepFactory::CreateRep(body, Style(Qt::red, 7.0), Style(QColor(30, 60, 140), 2.0),
                                          Style(QColor(150, 180, 230)),
                                          KEZVisOptions::VisibleVertices | KEZVisOptions::VisibleEdges
                                              | KEZVisOptions::VisibleFaces));
    // A point primitive is painted at its first point only, so each vertex
    // also gets a point rep of its own, from the vertex-list form.
    for (const KEZTopVertex *vertex : vertices)
        panel.Add(KEZVisRepFactory::CreateRep(QList<const KEZTopVertex *>{vertex}, Style(Qt::red, 7.0)));
}

void BuildVectorTextAnchors(PanelBuilder &panel)
{
    const KEZVisOptions mark = Style(Qt::red, 5.0);
    const KEZVisOptions stroke = Style(QColor(30, 30, 120), 1.0);
    for (KEZVisVectorText::Anchor anchor : KEZVisVectorText::GetAnchors()) {
        const int column = int(anchor) % 3;
        const int row = int(anchor) / 3;
        const KEZMathPoint at = panel.At(35 + column * 65, 30 + row * 55);
        KEZMathSetOfPoints point;
        point.append(at);
        panel.Add(new KEZVisRepGraphics(QList<const KEZVisPrimitive *>{new KEZVisPointPrimitive(point)}, mark));
        panel.Add(VectorText(QStringLiteral("Ab\n%1").arg(int(anchor)), at, 9.0, anchor).CreateRep(stroke, false, 0.0));
    }
}

void BuildVectorTextStyles(PanelBuilder &panel)
{
    const KEZVisOptions stroke = Style(QColor(30, 30, 120), 1.0);
    // Justification of a block of lines of different lengths.
    const KEZVisVectorText::Justification justifications[] = {
        KEZVisVectorText::JustifyLeft, KEZVisVectorText::JustifyCenter, KEZVisVectorText::JustifyRight};
    for (int n = 0; n < 3; ++n) {
        KEZVisVectorText block = VectorText(QStringLiteral("LINE\nTWO\nTHREE"), panel.At(10 + n * 62, 120), 7.0);
        block.SetJustification(justifications[n]);
        panel.Add(block.CreateRep(stroke, false, 0.0));
    }
    // Orientation, decorations and tilt.
    KEZVisVectorText mirrored = VectorText(QStringLiteral("Mirror"), panel.At(110, 85), 9.0);
    mirrored.SetOrientation(KEZVisVectorText::RightToLeft);
    panel.Add(mirrored.CreateRep(Style(Qt::darkRed, 1.0), false, 0.0));
    panel.Add(VectorText(QStringLiteral("Plain"), panel.At(10, 85), 9.0).CreateRep(stroke, false, 0.0));
    KEZVisVectorText decorated = VectorText(QStringLiteral("Decorated"), panel.At(10, 55), 9.0);
    decorated.SetDecorations(KEZVisVectorText::Underline | KEZVisVectorText::StrikeThrough
                             | KEZVisVectorText::Overline);
    panel.Add(decorated.CreateRep(Style(Qt::darkGreen, 1.0), false, 0.0));
    for (int n = 0; n < 3; ++n) {
        KEZVisVectorText tilted = VectorText(QStringLiteral("Tilt %1").arg(n * 20), panel.At(10 + n * 62, 20), 8.0);
        tilted.SetTiltAngle(n * 20 * pi / 180.0);
        panel.Add(tilted.CreateRep(stroke, n == 2, 4.0));
    }
}

void BuildExtraSetFills(PanelBuilder &panel)
{
    auto closedSquare = [&](double u, double v, double side, const QColor &edge) {
        return Polyline(Rectangle(panel.X() + u, panel.Y() + v, panel.X() + u + side, panel.Y() + v + side),
                        Style(edge, 1.5));
    };
    auto closedCircle = [&](double u, double v, double radius, const QColor &edge) {
        return Polyline(Circle(panel.X() + u, panel.Y() + v, radius, 48), Style(edge, 1.5));
    };
    auto *inner = new KEZVisRepExtraSet(QList<const KEZVisRep *>{closedCircle(140, 60, 25, Qt::darkBlue)},
                                        Style(QColor(120, 170, 255)));
    panel.Add(new KEZVisRepExtraSet(
        QList<const KEZVisRep *>{closedSquare(20, 20, 70, Qt::darkRed), closedCircle(60, 130, 35, Qt::darkRed), inner,
                                 new KEZVisRepSet(QList<const KEZVisRep *>{closedSquare(120, 110, 55, Qt::darkRed)})},
        Style(QColor(255, 190, 120))));
}

} // namespace

Gallery::Gallery() : m_body(std::make_unique<KEZTopBody>())
{
    const KEZMathSetOfPoints outline = ReadOutline();
    struct Entry
    {
        QString title;
        std::function<void(PanelBuilder &)> build;
    };
    const QList<Entry> entries{
        {QStringLiteral("Polylines and planes"), BuildPolylinesAndPlanes},
        {QStringLiteral("Polygon, prism, pyramid"), BuildRegularSolids},
        {QStringLiteral("Sphere"), BuildSphere},
        {QStringLiteral("Arrows, axis, origin"), BuildArrowsAxisOrigin},
        {QStringLiteral("Line styles"), BuildLineStyles},
        {QStringLiteral("Thicknesses"), BuildThicknesses},
        {QStringLiteral("Points"), BuildPoints},
        {QStringLiteral("Text primitives"), BuildTextPrimitives},
        {QStringLiteral("Polygon with holes"), [&](PanelBuilder &panel) { BuildFilledPolygon(panel, outline); }},
        {QStringLiteral("Extruded polygon"), [&](PanelBuilder &panel) { BuildExtrudedPolygon(panel, outline); }},
        {QStringLiteral("Fills of extra sets"), BuildExtraSetFills},
        {QStringLiteral("Vector text anchors"), BuildVectorTextAnchors},
        {QStringLiteral("Vector text styles"), BuildVectorTextStyles},
        {QStringLiteral("Body from topology"), [&](PanelBuilder &panel) { BuildBody(panel, m_body.get()); }},
    };
    for (int n = 0; n < entries.size(); ++n) {
        const double x = (n % columns) * (panelSide + panelGap);
        const double y = -(n / columns) * (panelSide + panelGap);
        PanelBuilder panel(x, y);
        entries[n].build(panel);
        m_reps.emplace_back(panel.Finish(entries[n].title));
        m_panels.append({entries[n].title, QRectF(x, y, panelSide, panelSide)});
    }
}

Gallery::~Gallery() = default;

QList<const KEZVisRep *> Gallery::Reps() const
{
    QList<const KEZVisRep *> reps;
    for (const auto &rep : m_reps)
        reps.append(rep.get());
    return reps;
}
