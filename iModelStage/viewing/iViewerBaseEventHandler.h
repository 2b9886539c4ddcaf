#ifndef IMODELSTAGE_VIEWING_IVIEWERBASEEVENTHANDLER_H
#define IMODELSTAGE_VIEWING_IVIEWERBASEEVENTHANDLER_H

#include <iModelStage/frame/iExport.h>

#include <osgGA/GUIEventHandler>

// The type a host derives its own viewer handlers from.
class IMODELSTAGE_EXPORT iViewerBaseEventHandler : public osgGA::GUIEventHandler {
public:
    iViewerBaseEventHandler() = default;

    using osgGA::GUIEventHandler::handle;
    bool handle(osgGA::GUIEventAdapter const& ea, osgGA::GUIActionAdapter& aa, osg::Object* object,
                osg::NodeVisitor* visitor) override;

protected:
    ~iViewerBaseEventHandler() override = default;
};

#endif
