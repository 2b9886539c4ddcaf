#ifndef IMODELSTAGE_MODEL_IGHOSTNODE_H
#define IMODELSTAGE_MODEL_IGHOSTNODE_H

#include <iModelStage/model/iNodeGroup.h>

#include <string>
#include <vector>

// Stands in for an object whose class the running program does not have:
// it keeps the record's bytes and writes them back unchanged, with the
// original class name.
class IMODELSTAGE_EXPORT iGhostNode : public iNodeGroup {
    I_CLASS(iGhostNode, iNodeGroup, 1)
    I_OSG_NODE(iGhostNode)
public:
    iGhostNode() = default;
    // A copy holds neither the bytes nor the class name.
    iGhostNode(iGhostNode const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    int getDataCount() const { return static_cast<int>(_data.size()); }
    char const* getData() const { return _data.data(); }
    std::string const& getOriginalClassName() const { return _originalClassName; }
    void setOriginalClassName(std::string const& name) { _originalClassName = name; }

    // Exactly size raw bytes; a size the stream cannot hold fails first.
    void readData(iInStream& stream, int size);
    // The bytes, raw, without a length.
    void writeData(iOutStream& stream);

    iGhostNode* asGhost() override { return this; }

protected:
    ~iGhostNode() override = default;

private:
    std::vector<char> _data;
    std::string _originalClassName;
};

#endif
