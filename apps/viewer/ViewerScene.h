#ifndef KEZVIEWER_VIEWERSCENE_H
#define KEZVIEWER_VIEWERSCENE_H

// What the viewer shows: the gallery scene with a gizmo on it, or the reps of
// a .kvr file. The scene owns its objects and the gizmo and takes them out of
// the environment when it goes.

#include <QList>
#include <QPointer>
#include <QString>

#include <KEZVisVirtualObject.h>

#include <memory>
#include <vector>

class Gallery;
class KEZVisEnvironment;
class KEZVisGizmo;

class ViewerScene
{
public:
    // Where the gizmo of the gallery scene stands: left of the first row.
    static constexpr double GizmoX = -70.0;
    static constexpr double GizmoY = 100.0;

    explicit ViewerScene(KEZVisEnvironment *environment);
    ~ViewerScene();

    // One selectable object per panel of the gallery, and a gizmo.
    void LoadGallery();
    // One selectable object per rep of the file; on failure nothing is added
    // and the reason is answered, else an empty string.
    QString LoadFile(const QString &path);

    KEZVisGizmo *GetGizmo() const { return m_gizmo.get(); }
    int GetObjectCount() const { return int(m_objects.size()); }

private:
    void Clear();

    KEZVisEnvironment *m_environment;
    // The gallery owns the reps that the gallery's objects show: it is
    // declared first so that it outlives them.
    std::unique_ptr<Gallery> m_gallery;
    std::vector<std::unique_ptr<KEZVisVirtualObject>> m_objects;
    std::unique_ptr<KEZVisGizmo> m_gizmo;
    // The gizmo leaves its seven part objects alive when it goes; the scene
    // deletes them after it.
    QList<QPointer<KEZVisVirtualObject>> m_gizmoParts;
};

#endif // KEZVIEWER_VIEWERSCENE_H
