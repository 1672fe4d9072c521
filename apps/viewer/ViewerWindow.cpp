#include "ViewerWindow.h"

#include "ViewerWidget.h"

#include <KEZVisEnvironment.h>

#include <QStatusBar>

ViewerWindow::ViewerWindow(KEZVisEnvironment *environment, KEZVisGizmo *gizmo, const QString &title,
                           const QString &error, QWidget *parent)
    : QMainWindow(parent), m_view(new ViewerWidget(this))
{
    setCentralWidget(m_view);
    setWindowTitle(title);
    m_view->SetEnvironment(environment);
    m_view->SetGizmo(gizmo);
    if (error.isEmpty())
        statusBar()->showMessage(tr("%n objects", nullptr, int(environment->GetObjects().size())));
    else
        statusBar()->showMessage(error);
}
