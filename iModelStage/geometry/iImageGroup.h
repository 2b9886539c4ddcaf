#ifndef IMODELSTAGE_GEOMETRY_IIMAGEGROUP_H
#define IMODELSTAGE_GEOMETRY_IIMAGEGROUP_H

#include <iModelStage/frame/iValueTypes.h>
#include <iModelStage/model/iNodeGroup.h>

#include <osg/Image>
#include <osg/ref_ptr>

// One image file of the document. Setting the file name loads the image;
// materials that take it as texture follow the change.
class IMODELSTAGE_EXPORT iImageGroup : public iNodeGroup {
    I_CLASS(iImageGroup, iNodeGroup, 1)
    I_OSG_NODE(iImageGroup)
    I_PROPERTY(iStringFileName, filename)
    // Follows filename; what it shows is up to the property editor.
    I_PROPERTY(iImagePreview, preview)
public:
    iImageGroup();
    // The copy shares the loaded image with its source.
    iImageGroup(iImageGroup const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    // Null until a file has been read, and after a file that could not be.
    osg::Image* getImage() { return _image.get(); }

    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

protected:
    ~iImageGroup() override;

    void slotfilenameChanged(iRoot* source, std::string name);

private:
    osg::ref_ptr<osg::Image> _image;
};

#endif
