#ifndef KEZVIS_WIREFRAME_H
#define KEZVIS_WIREFRAME_H

// The 2D pictures draw no surfaces. To show solids there, a wireframe rep
// holds the edges of their triangles as separate segments, seen obliquely
// from above: a point (x, y, z) is drawn at (x + 0.35 z, y + 0.25 z, 0), so
// that heights show.

#include <KEZVisOptions.h>
#include <KEZVisRep.h>

// A rep of the triangle edges of every surface primitive in \a rep, each edge
// once, drawn with \a options; a rep without primitives when there are no
// surfaces.
KEZVisRep *WireframeOf(const KEZVisRep &rep, const KEZVisOptions &options);

#endif // KEZVIS_WIREFRAME_H
