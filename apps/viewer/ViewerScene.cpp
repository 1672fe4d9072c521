#include "ViewerScene.h"

#include "Gallery.h"
#include "KvrFile.h"

#include <KEZVisEnvironment.h>
#include <KEZVisEnvironmentBatchContext.h>
#include <KEZVisGizmo.h>
#include <KEZVisOptions.h>
#include <KEZVisPrimitive.h>
#include <KEZVisRep.h>
#include <KEZVisVirtualObject.h>

#include <KEZMathAxis.h>

#include <QCoreApplication>
#include <QFile>

namespace {

// A rep that shows the primitives of a rep owned elsewhere: an object owns
// its rep, and the gallery keeps owning its own.
class BorrowedRep : public KEZVisRep
{
public:
    explicit BorrowedRep(const KEZVisRep *source) : m_source(source) {}
    void GetPrimitives(QList<const KEZVisPrimitive *> &primitives, QList<KEZVisOptions> &options) const override
    {
        m_source->GetPrimitives(primitives, options);
    }
    KEZMathBoundingBox GetBoundingBox() const override { return m_source->GetBoundingBox(); }

private:
    const KEZVisRep *m_source;
};

} // namespace

ViewerScene::ViewerScene(KEZVisEnvironment *environment) : m_environment(environment) {}

ViewerScene::~ViewerScene()
{
    Clear();
}

void ViewerScene::Clear()
{
    m_gizmo.reset();
    for (const QPointer<KEZVisVirtualObject> &part : std::as_const(m_gizmoParts))
        delete part.data();
    m_gizmoParts.clear();
    for (const auto &object : m_objects)
        m_environment->RemoveVirtualObject(object.get());
    m_objects.clear();
    m_gallery.reset();
}

void ViewerScene::LoadGallery()
{
    Clear();
    m_gallery = std::make_unique<Gallery>();
    const QList<const KEZVisRep *> reps = m_gallery->Reps();
    {
        KEZVisEnvironmentBatchContext batch(m_environment);
        for (int n = 0; n < reps.size(); ++n) {
            auto object = std::make_unique<KEZVisVirtualObject>(m_environment);
            object->SetRep(new BorrowedRep(reps[n]));
            object->SetLabel(n < m_gallery->Panels().size() ? m_gallery->Panels()[n].title : QString());
            object->EnableSelection();
            m_environment->AddVirtualObject(object.get());
            m_objects.push_back(std::move(object));
        }
    }
    const qsizetype before = m_environment->GetVirtualObjects().size();
    m_gizmo = std::make_unique<KEZVisGizmo>(m_environment);
    const QList<KEZVisVirtualObject *> listed = m_environment->GetVirtualObjects();
    for (qsizetype n = before; n < listed.size(); ++n)
        m_gizmoParts.append(listed[n]);
    KEZMathAxis position;
    position.SetOrigin(KEZMathPoint(GizmoX, GizmoY, 0.0));
    m_gizmo->SetPosition(position);
}

QString ViewerScene::LoadFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QCoreApplication::translate("ViewerScene", "cannot open %1: %2").arg(path, file.errorString());
    Kvr::ReadResult result = Kvr::Read(file);
    if (!result.error.isEmpty())
        return QCoreApplication::translate("ViewerScene", "cannot read %1: %2").arg(path, result.error);
    Clear();
    KEZVisEnvironmentBatchContext batch(m_environment);
    for (auto &rep : result.reps) {
        auto object = std::make_unique<KEZVisVirtualObject>(m_environment);
        object->SetRep(rep.release());
        object->EnableSelection();
        m_environment->AddVirtualObject(object.get());
        m_objects.push_back(std::move(object));
    }
    return QString();
}
