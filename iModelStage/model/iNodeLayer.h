#ifndef IMODELSTAGE_MODEL_INODELAYER_H
#define IMODELSTAGE_MODEL_INODELAYER_H

#include <iModelStage/model/iBaseModel.h>

#include <string>
#include <vector>

class iNodeGroup;

// A model that persists: it writes its tree as a flat list of object
// records (class, size, object, parent ids), then its proxy selectors and
// its selection, and rebuilds the tree from them. Records of classes the
// program does not have come back as ghosts and are written back byte for
// byte.
//
// Reading a layer never empties it first: reading into a layer that holds
// objects merges.
class IMODELSTAGE_EXPORT iNodeLayer : public iBaseModel {
    I_CLASS(iNodeLayer, iBaseModel, 4)
    I_OSG_OBJECT(iNodeLayer)
public:
    iNodeLayer() = default;
    iNodeLayer(iNodeLayer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    // Writes at version 4; reads versions 1 to 4.
    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

    // Binds the weak pointers of the proxy selectors to their ids.
    void resolveLinks() override;

    // A layer of a class the program does not have.
    virtual bool isGhost() const { return false; }

    // The selection block: a count and the ids of selected objects.
    void loadLayersSelection(iInStream& stream);
    void saveLayersSelection(iOutStream& stream);

protected:
    ~iNodeLayer() override = default;

    // One record without its class name: size, object, parent ids. A size
    // of 0 or an unknown class gives null.
    static iNodeGroup* iReadNodeGroup(char const* className, iInStream& stream, int version, int& size,
                                      std::vector<long>& parents);
    static void iWriteNodeGroup(iNodeGroup* object, iOutStream& stream);

private:
    std::string progressText(char const* verb, std::size_t count) const;
};

#endif
