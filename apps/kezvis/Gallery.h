#ifndef KEZVIS_GALLERY_H
#define KEZVIS_GALLERY_H

// The gallery scene: one panel for each kind of geometry the library makes,
// laid out in a grid and labelled.

#include <KEZVisRep.h>

#include <KEZTopBody.h>

#include <QList>
#include <QRectF>
#include <QString>

#include <memory>
#include <vector>

class Gallery
{
public:
    // One labelled panel: its title and its square in model coordinates.
    struct Panel
    {
        QString title;
        QRectF area;
    };

    Gallery();
    ~Gallery();

    // The reps of the whole scene, one set per panel; owned by the gallery.
    QList<const KEZVisRep *> Reps() const;
    const QList<Panel> &Panels() const { return m_panels; }

    // The side of a panel and the gap between panels, in model units.
    static constexpr double panelSide = 200.0;
    static constexpr double panelGap = 20.0;
    static constexpr int columns = 5;

private:
    // The body of the topology panel, with its geometry as its children. Its
    // rep reads the curves and surfaces on demand, so it is declared first
    // and outlives the reps.
    std::unique_ptr<KEZTopBody> m_body;
    std::vector<std::unique_ptr<KEZVisRep>> m_reps;
    QList<Panel> m_panels;
};

#endif // KEZVIS_GALLERY_H
