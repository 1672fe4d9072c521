// The scenes of kezvis-viewer and its window: the gallery with a gizmo, .kvr
// files good and bad, and the status bar.

#include "ViewerTestSupport.h"

#include "Gallery.h"
#include "KvrFile.h"
#include "ViewerScene.h"
#include "ViewerWindow.h"

#include <KEZVisGizmo.h>

#include <QFile>
#include <QStatusBar>
#include <QTemporaryDir>

using namespace ViewerTest;

namespace {

// Writes one red rectangle from (-20, -20) to (20, 20) as a .kvr file.
QString WriteRectangleFile(const QTemporaryDir &folder)
{
    const QString path = folder.filePath(QStringLiteral("rectangle.kvr"));
    std::unique_ptr<KEZVisRep> rep(Rectangle(-20, -20, 20, 20, QColor(200, 30, 30)));
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    QString error;
    EXPECT_TRUE(Kvr::Write(file, {rep.get()}, &error)) << error.toStdString();
    return path;
}

} // namespace

TEST(ViewerScene, TheGalleryHasOneSelectableObjectPerPanelAndAVisibleGizmo)
{
    ViewerEnvironment environment;
    ViewerScene scene(&environment);
    scene.LoadGallery();
    const int panels = int(Gallery().Panels().size());
    EXPECT_EQ(scene.GetObjectCount(), panels);
    EXPECT_EQ(environment.GetVirtualObjects().size(), panels + 7);
    for (int n = 0; n < panels; ++n)
        EXPECT_TRUE(environment.GetVirtualObjects()[n]->IsSelectable());
    ASSERT_NE(scene.GetGizmo(), nullptr);
    EXPECT_TRUE(scene.GetGizmo()->IsVisible());
    EXPECT_EQ(scene.GetGizmo()->GetPosition().GetOrigin(),
              KEZMathPoint(ViewerScene::GizmoX, ViewerScene::GizmoY, 0.0));
}

TEST(ViewerScene, TakesItsObjectsOutOfTheEnvironmentWhenItGoes)
{
    ViewerEnvironment environment;
    {
        ViewerScene scene(&environment);
        scene.LoadGallery();
    }
    EXPECT_TRUE(environment.GetVirtualObjects().isEmpty());
}

TEST(ViewerScene, AFileBecomesOneSelectableObjectPerRep)
{
    QTemporaryDir folder;
    const QString path = WriteRectangleFile(folder);
    ViewerEnvironment environment;
    ViewerScene scene(&environment);
    EXPECT_EQ(scene.LoadFile(path), QString());
    ASSERT_EQ(environment.GetVirtualObjects().size(), 1);
    EXPECT_TRUE(environment.GetVirtualObjects().first()->IsSelectable());
    EXPECT_EQ(scene.GetGizmo(), nullptr);
}

TEST(ViewerScene, AFileThatIsNotARepFileIsRefusedWithItsNameAndAddsNothing)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("text.kvr"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("hello");
    file.close();
    ViewerEnvironment environment;
    ViewerScene scene(&environment);
    const QString error = scene.LoadFile(path);
    EXPECT_TRUE(error.startsWith(QStringLiteral("cannot read ") + path)) << error.toStdString();
    EXPECT_TRUE(environment.GetVirtualObjects().isEmpty());
}

TEST(ViewerScene, ATruncatedFileIsRefusedAndAddsNothing)
{
    QTemporaryDir folder;
    const QString path = WriteRectangleFile(folder);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.resize(file.size() - 5));
    file.close();
    ViewerEnvironment environment;
    ViewerScene scene(&environment);
    EXPECT_FALSE(scene.LoadFile(path).isEmpty());
    EXPECT_TRUE(environment.GetVirtualObjects().isEmpty());
}

TEST(ViewerWindow, ShowsTheErrorInTheStatusBar)
{
    ViewerEnvironment environment;
    ViewerWindow window(&environment, nullptr, QStringLiteral("kezvis-viewer"), QStringLiteral("cannot read x.kvr: bad magic"));
    EXPECT_EQ(window.statusBar()->currentMessage(), QStringLiteral("cannot read x.kvr: bad magic"));
}

TEST(ViewerWindow, ShowsTheNumberOfObjectsInTheStatusBarWithoutAnError)
{
    ViewerEnvironment environment;
    ViewerScene scene(&environment);
    scene.LoadGallery();
    ViewerWindow window(&environment, scene.GetGizmo(), QStringLiteral("kezvis-viewer"), QString());
    // One object per gallery panel and the gizmo's seven parts.
    const int objects = int(Gallery().Panels().size()) + 7;
    EXPECT_EQ(window.statusBar()->currentMessage(), QStringLiteral("%1 objects").arg(objects));
    EXPECT_EQ(window.GetView()->GetClient().GetItems().size(), size_t(objects));
}
