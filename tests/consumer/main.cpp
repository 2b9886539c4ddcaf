// Builds a small document through the installed package, saves it, loads
// it back, and checks that the objects came back.
#include <iModelStage/iModelStage.h>

#include <cstdio>
#include <memory>
#include <sstream>

int main()
{
    auto manager = std::make_unique<iLayersManager>();
    iNodeLayer* layer = iLayersManager::registerNodeLayerClass("iNodeLayer", "objects");
    if (!layer)
        return 1;
    osg::ref_ptr<iTransformGroup> box = new iTransformGroup;
    box->set_name("box");
    box->setPosition(osg::Vec3f(1.0f, 2.0f, 3.0f));
    layer->addObject(box.get(), true);

    iMemoryBuffer buffer;
    iOutStream out(&buffer);
    manager->saveToStream(out);
    manager->emptyAllLayers();

    iMemoryBuffer saved(buffer.data(), buffer.size());
    iInStream in(&saved);
    manager->loadFromStream(in);
    iNodeGroup* loaded = layer->findObjectByName("box");
    auto* transform = dynamic_cast<iTransformGroup*>(loaded);
    if (!transform || transform->getPosition() != osg::Vec3f(1.0f, 2.0f, 3.0f))
        return 2;
    std::printf("consumer: %d object(s) back from %zu bytes\n", layer->getObjectsCount(), buffer.size());
    return 0;
}
