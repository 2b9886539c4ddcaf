#ifndef IMODELSTAGE_VIEWING_ICOLORRANGE_H
#define IMODELSTAGE_VIEWING_ICOLORRANGE_H

#include <iModelStage/frame/iExport.h>

#include <osg/Vec4f>
#include <osg/ref_ptr>
#include <osgSim/ScalarsToColors>

#include <vector>

// Maps a value between a minimum and a maximum to a colour, graded
// linearly through a list of colours spread evenly over the range. By
// default the list runs blue, cyan, green, yellow, red.
class IMODELSTAGE_EXPORT iColorRange : public osgSim::ScalarsToColors {
public:
    iColorRange(float min, float max);
    iColorRange(float min, float max, std::vector<osg::Vec4f> const& colors);

    // White without colours; the end colours outside the range and for an
    // empty range.
    osg::Vec4 getColor(float scalar) const override;

    void setColors(std::vector<osg::Vec4f> const& colors) { _colors = colors; }
    std::vector<osg::Vec4f> const& getColors() const { return _colors; }

protected:
    ~iColorRange() override = default;

private:
    std::vector<osg::Vec4f> _colors;
};

#endif
