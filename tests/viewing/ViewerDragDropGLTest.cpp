#include "viewing/ViewerTestSupport.h"

#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/viewing/iDragDropInterface.h>
#include <iModelStage/viewing/iDropCallback.h>

#include <QDataStream>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>

#include <string>
#include <vector>

// Accepts objects named "ok" and remembers what reached it.
class iProbeDropCallback : public iDropCallback {
    I_CLASS(iProbeDropCallback, iDropCallback, 1)
public:
    iProbeDropCallback() { ++made; }
    ~iProbeDropCallback() override { ++deleted; }

    bool canDrop(iRoot* target, NodeList const& nodes) override
    {
        lastTarget = target;
        lastNodes = nodes;
        return !nodes.empty() && nodes.front()->getName() == "ok";
    }
    bool drop(iRoot* target, NodeList const& nodes) override
    {
        ++drops;
        lastTarget = target;
        lastNodes = nodes;
        return false;
    }

    static inline int made = 0;
    static inline int deleted = 0;
    static inline int drops = 0;
    static inline iRoot* lastTarget = nullptr;
    static inline NodeList lastNodes;
};

I_REGISTER_CLASS(iProbeDropCallback)

namespace {

QByteArray payload(QString const& source, std::vector<osg::Node*> const& nodes)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << source;
    for (osg::Node* node : nodes)
        out << QString::number(reinterpret_cast<qulonglong>(node));
    return bytes;
}

// Qt gives a real drag to the GL surface under the pointer, a direct one to
// the viewer widget: both must reach the viewer.
bool sendEnter(QObject* receiver, QMimeData const& mime)
{
    QDragEnterEvent event(QPoint(20, 20), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    event.setAccepted(false);
    QCoreApplication::sendEvent(receiver, &event);
    return event.isAccepted();
}

bool sendDrop(QObject* receiver, QMimeData const& mime)
{
    QDropEvent event(QPointF(20, 20), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    event.setAccepted(false);
    QCoreApplication::sendEvent(receiver, &event);
    return event.isAccepted();
}

} // namespace

TEST(ViewerDragDrop, PayloadReachesTheRegisteredCallback)
{
    EXPECT_TRUE(iDragDropInterface::registerCallback("iNodeGroup", "iViewer", "iProbeDropCallback"));
    EXPECT_FALSE(iDragDropInterface::registerCallback("iNodeGroup", "iViewer", "iDropCallback"));
    EXPECT_TRUE(iDragDropInterface::registerCallback("iMissing", "iViewer", "iNoSuchClass"));

    ProbeViewer viewer;
    ASSERT_TRUE(viewer.open(160, 120));
    EXPECT_TRUE(viewer.acceptDrops());

    osg::ref_ptr<iNodeGroup> good = new iNodeGroup;
    good->setName("ok");
    osg::ref_ptr<iNodeGroup> other = new iNodeGroup;
    other->setName("no");

    QMimeData mime;
    mime.setData(iDragDropInterface::mimeType, payload("iNodeGroup", {good.get(), other.get()}));
    int const madeBefore = iProbeDropCallback::made;
    EXPECT_TRUE(sendEnter(&viewer, mime));
    EXPECT_EQ(iProbeDropCallback::made, madeBefore + 1);
    EXPECT_EQ(iProbeDropCallback::deleted, iProbeDropCallback::made);
    EXPECT_EQ(iProbeDropCallback::lastTarget, static_cast<iRoot*>(static_cast<iBaseView*>(&viewer)));
    EXPECT_EQ(iProbeDropCallback::lastNodes, (NodeList{good, other}));

    QMimeData refused;
    refused.setData(iDragDropInterface::mimeType, payload("iNodeGroup", {other.get()}));
    EXPECT_FALSE(sendEnter(viewer.getGLWindow(), refused));

    // The drop is accepted even though the callback says false.
    iProbeDropCallback::lastNodes.clear();
    EXPECT_TRUE(sendDrop(viewer.getGLWindow(), mime));
    EXPECT_EQ(iProbeDropCallback::drops, 1);
    EXPECT_EQ(iProbeDropCallback::lastNodes, (NodeList{good, other}));

    // A source without pointers, another format, an unknown pair, a class
    // that cannot be made: nothing reaches a callback.
    QMimeData empty;
    empty.setData(iDragDropInterface::mimeType, payload("iNodeGroup", {}));
    QMimeData text;
    text.setText("ok");
    QMimeData unknown;
    unknown.setData(iDragDropInterface::mimeType, payload("iMaterialGroup", {good.get()}));
    QMimeData missing;
    missing.setData(iDragDropInterface::mimeType, payload("iMissing", {good.get()}));
    QString source;
    NodeList nodes;
    EXPECT_FALSE(viewer.decodeData(&empty, source, nodes));
    EXPECT_EQ(source, "iNodeGroup");
    EXPECT_FALSE(viewer.decodeData(&text, source, nodes));
    for (QMimeData const* data : {&empty, &text, &unknown, &missing})
        EXPECT_FALSE(sendEnter(&viewer, *data));
    for (QMimeData const* data : {&empty, &text, &unknown, &missing})
        EXPECT_FALSE(sendDrop(&viewer, *data));
    EXPECT_EQ(iProbeDropCallback::drops, 1);
    EXPECT_FALSE(sendDrop(viewer.getGLWindow(), text));
    EXPECT_EQ(iProbeDropCallback::drops, 1);
}
