#ifndef KEZVIEWER_VIEWERWINDOW_H
#define KEZVIEWER_VIEWERWINDOW_H

// The main window of kezvis-viewer: the view in the middle and a status bar
// that shows the number of objects, or why a file could not be shown.

#include <QMainWindow>

class KEZVisEnvironment;
class KEZVisGizmo;
class ViewerWidget;

class ViewerWindow : public QMainWindow
{
    Q_OBJECT
public:
    // A window on \a environment, whose view measures the mouse point level
    // with \a gizmo (may be null). \a error, if not empty, is shown in the
    // status bar instead of the object count; \a title names the window.
    ViewerWindow(KEZVisEnvironment *environment, KEZVisGizmo *gizmo, const QString &title, const QString &error,
                 QWidget *parent = nullptr);

    ViewerWidget *GetView() const { return m_view; }

private:
    ViewerWidget *m_view;
};

#endif // KEZVIEWER_VIEWERWINDOW_H
