#include <iModelStage/model/iGhostNode.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>

I_REGISTER_CLASS(iGhostNode)

iGhostNode::iGhostNode(iGhostNode const& other, osg::CopyOp const& copyop) : iNodeGroup(other, copyop) {}

void iGhostNode::readData(iInStream& stream, int size)
{
    _data = stream.readBlock(size);
}

void iGhostNode::writeData(iOutStream& stream)
{
    stream.writeRaw(_data.data(), static_cast<std::streamsize>(_data.size()));
}
