// Load-time start-up of the library.
//
// When the library is loaded, the static initialisers of this file hand the
// library's start-up routine to the family through KEZSysRegisterInit() and
// register the Qt resource data of the built-in vector fonts (the directory
// ":/vector-fonts"); when it is unloaded, the matching exit handler releases
// the resource data. The constant KEZVisNeedRedrawWhenVisible is built beside
// the client's code. Nothing else runs at load time.

#include "KEZVisGlobal.h"
#include "KEZVisOptions.h"
#include "KEZVisPolylinePrimitive.h"
#include "KEZVisSurfacePrimitive.h"
#include "scene/KEZVisSceneMetaTypes_p.h"

#include <KEZSysRegisterInit.h>

#include <QMetaType>

bool _KEZVisualizationLoaded = false;

// Defined by the resource compiler's output for vectorfonts.qrc.
int qInitResources_vectorfonts();
int qCleanupResources_vectorfonts();

namespace {

// Registers the library's types with Qt's meta-type system under their names,
// so that QMetaType::fromName() and QVariant find them. A class that travels
// in a QVariant or a queued connection adds its line here.
void RegisterMetaTypes()
{
    qRegisterMetaType<KEZVisOptions>("KEZVisOptions");
    qRegisterMetaType<KEZVisOptions::PointSymbol>("KEZVisOptions::PointSymbol");
    qRegisterMetaType<KEZVisOptions::LineStyle>("KEZVisOptions::LineStyle");
    qRegisterMetaType<KEZVisPolylinePrimitive::Structure>("KEZVisPolylinePrimitive::Structure");
    qRegisterMetaType<KEZVisPolylinePrimitive>("KEZVisPolylinePrimitive");
    qRegisterMetaType<KEZVisSurfacePrimitive>("KEZVisSurfacePrimitive");
    KEZVisRegisterSceneMetaTypes();
}

// The routine that the family runs once it has started.
void StartUp()
{
    _KEZVisualizationLoaded = true;
    RegisterMetaTypes();
}

// Hands the routine over at load time and keeps the family's answer, which is
// true when the routine has run or will run.
struct StartupRegistration
{
    StartupRegistration() { _KEZVisualizationLoaded = KEZSysRegisterInit(StartUp); }
};

const StartupRegistration startupRegistration;

// Registers the compiled-in font files (format version 3, zlib-compressed) for
// as long as the library is loaded. The resource compiler's output registers
// the same data from an initialiser of its own; Qt keeps one entry per
// resource tree, so whichever comes second does nothing, at load and at unload.
struct VectorFontResources
{
    VectorFontResources() { qInitResources_vectorfonts(); }
    ~VectorFontResources() { qCleanupResources_vectorfonts(); }
};

const VectorFontResources vectorFontResources;

} // namespace
