#include <iModelStage/viewing/iViewerManager.h>

#include <iModelStage/frame/TypeMismatchError.h>
#include <iModelStage/frame/UnknownPropertyError.h>
#include <iModelStage/frame/iValueTypes.h>
#include <iModelStage/model/iBaseModel.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/model/iSettingNodeBase.h>
#include <iModelStage/model/iSettingsManagerBase.h>
#include <iModelStage/viewing/iViewer.h>

I_REGISTER_CLASS(iViewerManager)

namespace {

char const* const backgroundSetting = "iModelStage_viewerbg";
osg::Vec4f const defaultBackground(0.24313725531101227f, 0.29019609093666077f, 0.3843137323856354f, 1.0f);

iViewerManager*& instance()
{
    static iViewerManager* manager = nullptr;
    return manager;
}

iSettingNodeBase* backgroundNode()
{
    iNodeLayer* layer = iSettingsManagerBase::getSettingsLayer();
    if (!layer)
        return nullptr;
    return dynamic_cast<iSettingNodeBase*>(layer->findObjectByName(backgroundSetting));
}

} // namespace

iViewerManager::iViewerManager(QObject* parent) : QObject(parent)
{
    instance() = this;
    if (iSettingNodeBase* setting = backgroundNode())
        if (iProperty const* property = setting->getClass().findProperty(backgroundSetting, true))
            property->sigChanged.connect(this, &iViewerManager::applySettingsChanges);
}

iViewerManager::~iViewerManager()
{
    if (instance() == this)
        instance() = nullptr;
}

iViewerManager* iViewerManager::getInstance()
{
    return instance();
}

osg::Vec4f iViewerManager::readBackgroundColor()
{
    iSettingNodeBase* setting = backgroundNode();
    if (!setting)
        return defaultBackground;
    try {
        return setting->getPropertyValue<iColor4>(backgroundSetting);
    } catch (TypeMismatchError const&) {
        return defaultBackground;
    } catch (UnknownPropertyError const&) {
        return defaultBackground;
    }
}

void iViewerManager::addViewer(iViewer* viewer)
{
    if (!viewer || m_viewers.contains(viewer))
        return;
    viewer->sigDestroyed.connect(this, &iViewerManager::slotViewerDestroyed);
    m_viewers.append(viewer);
    m_viewerIds.append(viewer->getUniqueId());
}

void iViewerManager::slotViewerDestroyed(iRoot* root)
{
    if (!root)
        return;
    int const row = m_viewerIds.indexOf(root->getUniqueId());
    if (row < 0)
        return;
    m_viewers.removeAt(row);
    m_viewerIds.removeAt(row);
}

void iViewerManager::paintViewers()
{
    for (iViewer* viewer : m_viewers)
        if (viewer->isVisible())
            viewer->updateGL();
}

void iViewerManager::resetAll()
{
    for (iViewer* viewer : m_viewers) {
        if (!viewer->isVisible())
            continue;
        viewer->resetToHome();
        viewer->resetIPlane();
        viewer->setClipBoxEnabled(false);
        viewer->setClipBoxData(osg::BoundingBox(), osg::Matrixd::identity());
    }
}

void iViewerManager::applySettingsChanges()
{
    osg::Vec4f const color = readBackgroundColor();
    for (iViewer* viewer : m_viewers)
        viewer->getCamera()->setClearColor(color);
}

bool iViewerManager::isMaskEnabled(int mask)
{
    iViewerManager* manager = instance();
    if (!manager)
        return false;
    for (iViewer* viewer : manager->m_viewers)
        if (viewer->isVisible() && viewer->isRendererMaskEnabled(static_cast<unsigned int>(mask)))
            return true;
    return false;
}
