#include <iModelStage/viewing/iViewerBaseEventHandler.h>

bool iViewerBaseEventHandler::handle(osgGA::GUIEventAdapter const& ea, osgGA::GUIActionAdapter& aa,
                                     osg::Object* object, osg::NodeVisitor* visitor)
{
    return osgGA::GUIEventHandler::handle(ea, aa, object, visitor);
}
