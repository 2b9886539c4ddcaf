#include <iModelStage/model/iSettingsManagerBase.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/frame/iSafeFileWriter.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/model/iSettingNodeBase.h>

#include <fstream>
#include <set>
#include <string>

char const* const iSettingsManagerBase::FileId = "iSettingsManager::12122011";

iSettingsManagerBase::iSettingsManagerBase()
{
    getSettingsLayer();
}

iNodeLayer* iSettingsManagerBase::getSettingsLayer()
{
    // Never destroyed: settings outlive every static that may ask for them.
    static osg::ref_ptr<iNodeLayer>* layer = new osg::ref_ptr<iNodeLayer>(new iNodeLayer);
    return layer->get();
}

bool iSettingsManagerBase::addNewPropertyObject(iSettingNodeBase* setting)
{
    if (!setting)
        return false;
    iNodeLayer* layer = getSettingsLayer();
    if (layer->findObjectByName(setting->get_name()))
        return false;
    layer->addObject(setting, true);
    return true;
}

void iSettingsManagerBase::removePropertyObject(iSettingNodeBase* setting)
{
    getSettingsLayer()->removeObject(setting, true);
}

void iSettingsManagerBase::restoreDefaultValues()
{
    NodeList objects;
    iNodeLayer* layer = getSettingsLayer();
    layer->getObjectsList(layer->getObjectsRoot(), objects, nullptr);
    for (osg::ref_ptr<osg::Node> const& node : objects)
        if (iSettingNodeBase* setting = dynamic_cast<iSettingNodeBase*>(node.get()))
            setting->restoreDefaultValue();
}

bool iSettingsManagerBase::write(char const* fileName)
{
    if (!fileName)
        return false;
    // As with the document: the old file stays until the new one is whole.
    iSafeFileWriter file;
    if (!file.open(fileName))
        return false;
    try {
        iOutStream stream(file.buffer());
        stream.exceptions(std::ios_base::failbit | std::ios_base::badbit);
        stream.writeString(FileId);
        {
            iLayersManager::QuietProgress quiet(iLayersManager::getInstance());
            getSettingsLayer()->write(stream);
        }
    } catch (...) {
        file.abandon();
        return false;
    }
    return file.commit();
}

void iSettingsManagerBase::removeGhostNodes()
{
    iNodeLayer* layer = getSettingsLayer();
    NodeList objects;
    layer->getObjectsList(layer->getObjectsRoot(), objects, nullptr);
    for (osg::ref_ptr<osg::Node> const& node : objects) {
        iNodeGroup* object = dynamic_cast<iNodeGroup*>(node.get());
        if (!object || !object->asGhost())
            continue;
        iNodeGroup::setNodeFlag(object, 2, true);
        layer->removeObject(object, true);
    }
}

bool iSettingsManagerBase::read(char const* fileName)
{
    if (!fileName)
        return false;
    try {
        std::filebuf file;
        if (!file.open(fileName, std::ios_base::in | std::ios_base::binary))
            return false;
        iInStream stream(&file);
        if (stream.readString() != FileId)
            return false;
        osg::ref_ptr<iNodeLayer> incoming = new iNodeLayer;
        {
            iLayersManager::QuietProgress quiet(iLayersManager::getInstance());
            incoming->read(stream, incoming->getClassVersion());
        }
        removeGhostNodes();

        // Settings of unknown classes come back as ghosts; they are kept.
        std::set<std::string> classes;
        iRoot::getChildrenClassesList("iSettingNodeBase", classes, true);
        classes.insert("iGhostNode");
        NodeList objects;
        incoming->getObjectsList(incoming->getObjectsRoot(), objects, &classes);

        iNodeLayer* layer = getSettingsLayer();
        for (osg::ref_ptr<osg::Node> const& node : objects) {
            iNodeGroup* object = dynamic_cast<iNodeGroup*>(node.get());
            if (!object)
                continue;
            iSettingNodeBase* setting = dynamic_cast<iSettingNodeBase*>(object);
            if (setting && !object->asGhost()) {
                iNodeGroup* existing = layer->findObjectByName(object->get_name());
                if (iSettingNodeBase* old = dynamic_cast<iSettingNodeBase*>(existing)) {
                    setting->copyFrom(old);
                    iNodeGroup::setNodeFlag(old, 2, true);
                    layer->removeObject(old, true);
                }
            }
            layer->addObject(object, true);
        }
        return true;
    } catch (...) {
        return false;
    }
}
