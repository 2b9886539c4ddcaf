#include "model/ModelTestSupport.h"

#include <iModelStage/model/iObjectWalk.h>

#include <cstdint>

namespace {

class DocumentLayout : public LayersTest {};

// Share of consecutive objects in walk order that lie close behind each
// other in memory.
double shareInOrder(iNodeLayer* layer)
{
    std::vector<std::uintptr_t> addresses;
    for (iObjectWalk walk(layer->getObjectsRoot()); osg::Node* node = walk.next();)
        addresses.push_back(reinterpret_cast<std::uintptr_t>(node));
    int close = 0;
    for (std::size_t i = 1; i < addresses.size(); ++i)
        if (addresses[i] > addresses[i - 1] && addresses[i] - addresses[i - 1] < 8192)
            ++close;
    return addresses.size() > 1 ? static_cast<double>(close) / static_cast<double>(addresses.size() - 1) : 0;
}

} // namespace

TEST_F(DocumentLayout, InterleavedDocumentReloadsInReadingOrderAndSavesTheSameBytes)
{
    // Built as an editing session builds it: one object at a time, with
    // other allocations of the host in between, and children added late.
    std::vector<std::unique_ptr<char[]>> host;
    std::vector<osg::ref_ptr<iTransformGroup>> roots;
    int n = 0;
    auto create = [&](osg::Group* parent) {
        osg::ref_ptr<iTransformGroup> object = make<iTransformGroup>("object " + std::to_string(n));
        object->setPosition(osg::Vec3f(n * 0.5f, -n * 0.25f, 3.0f));
        object->setScale(osg::Vec3f(1.0f + (n % 5) * 0.5f, 0.25f + (n % 3), n % 7 == 0 ? -2.0f : 1.5f));
        if (parent)
            a->addChildObject(parent, object.get(), false);
        else
            a->addObject(object.get(), false);
        host.emplace_back(new char[24 + (n * 40) % 520]);
        ++n;
        return object;
    };
    for (int r = 0; r < 20; ++r)
        roots.push_back(create(nullptr));
    for (osg::ref_ptr<iTransformGroup> const& root : roots)
        for (int c = 0; c < 10; ++c) {
            osg::ref_ptr<iTransformGroup> child = create(root.get());
            for (int g = 0; g < 3; ++g)
                create(child.get());
        }

    std::string const first = save();
    load(first);
    EXPECT_EQ(a->getObjectsCount(), 820);
    EXPECT_TRUE(save() == first);
    load(first);
    EXPECT_TRUE(save() == first);
    // However the first copy lay, the reloaded one lies in reading order.
    EXPECT_GT(shareInOrder(a), 0.9);
}
