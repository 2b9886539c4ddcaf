#ifndef IMODELSTAGE_VIEWING_IVIEWEREVENTHANDLER_H
#define IMODELSTAGE_VIEWING_IVIEWEREVENTHANDLER_H

#include <iModelStage/frame/iExport.h>
#include <iModelStage/viewing/iViewerBaseEventHandler.h>

#include <osg/MatrixTransform>
#include <osg/Vec2i>
#include <osg/observer_ptr>
#include <osg/ref_ptr>

#include <string>

class iBaseManipulator;
class iPointQuote;
class iGeometricsLayer;
class iIAPoint;
class iInteractor;
class iViewer;
class iViewerBaseButton;

// Where input meets the document: the handler a host attaches to each
// viewer. Every event goes first to the on-screen view buttons, then to
// the manipulator of the selection, then to the current tool, as a 3D
// point on the input plane after snaps and constraints.
//
// Mouse: left works the tool; middle pans; in the axonometric lookup
// right with Shift pans, with Ctrl zooms, alone rotates; the wheel zooms.
class IMODELSTAGE_EXPORT iViewerEventHandler : public iViewerBaseEventHandler {
public:
    iViewerEventHandler() = default;

    using iViewerBaseEventHandler::handle;
    bool handle(osgGA::GUIEventAdapter const& ea, osgGA::GUIActionAdapter& aa, osg::Object* object,
                osg::NodeVisitor* visitor) override;

    // Whether odd steps of a snapping tool are held to the axes of the
    // input plane, through the last released point.
    static bool getOrthoEnabled();
    static void setOrthoEnabled(bool on);

    // The dashed cross through the cursor, shared by every viewer; null
    // until the first event reaches a tool.
    static osg::MatrixTransform* getConstructionCross() { return s_cross.get(); }
    // The text beside a snapped point, shared by every viewer; null until a
    // snap first answers.
    static iPointQuote* getSnapLabel() { return s_snapLabel.get(); }

    // A tool by class name, null while the class is unknown; navigation
    // tools come from the application's tool set.
    static iInteractor* newTool(char const* className);
    // Pushes over the current tool; a tool the manager does not take is
    // deleted.
    static bool pushNewTool(iInteractor* tool);

    // Key codes as the GL surface sends them.
    enum iKeys : int {
        iKeySpace = 32,
        iKeyShiftS = 83,
        iKeyA = 97,
        iKeyS = 115,
        iKeyW = 119,
        iKeyZ = 122,
        iKeyBackSpace = 65288,
        iKeyReturn = 65293,
        iKeyEscape = 65307,
        iKeyDelete = 65385
    };

protected:
    ~iViewerEventHandler() override = default;

    // Bits 1 Ctrl, 2 Shift, 4 Alt.
    unsigned int getKeyMod(osgGA::GUIEventAdapter const& ea);
    iViewerBaseButton* getButton(iViewer* viewer, int x, int y);
    bool processViewButtons(iViewer* viewer, osgGA::GUIEventAdapter const& ea, osgGA::GUIActionAdapter& aa);
    bool processManipulators(iViewer* viewer, iInteractor* interactor, osgGA::GUIEventAdapter const& ea,
                             iIAPoint const& point);
    iBaseManipulator* findChildManipulator(iViewer* viewer, float x, float y);

private:
    bool dispatch(iViewer* viewer, iGeometricsLayer* layer, iInteractor* interactor,
                  osgGA::GUIEventAdapter const& ea, iIAPoint const& point);
    bool onPush(iViewer* viewer, iGeometricsLayer* layer, iInteractor* interactor,
                osgGA::GUIEventAdapter const& ea, iIAPoint const& point);
    bool onRelease(iViewer* viewer, iInteractor* interactor, osgGA::GUIEventAdapter const& ea,
                   iIAPoint const& point);
    bool onKeyDown(iViewer* viewer, iGeometricsLayer* layer, iInteractor* interactor, int key);
    // A navigation tool by class name; nothing while the class is unknown.
    void pushTool(char const* className, iViewer* viewer, unsigned int keyMods, iIAPoint const* click,
                  bool startAfterPush);
    void placeConstructionCross(iGeometricsLayer* layer, iInteractor* interactor, iIAPoint const& point);
    void attachConstructionCross(iGeometricsLayer* layer);
    static void showSnapLabel(osg::Group* interactive, std::string const& alias, osg::Vec3f const& at);
    static void giveFocus(iViewer* viewer);

    static bool orthoenabled;
    static osg::ref_ptr<osg::MatrixTransform> s_cross;
    static osg::observer_ptr<iGeometricsLayer> s_lastLayer;
    static osg::ref_ptr<iPointQuote> s_snapLabel;
};

#endif
