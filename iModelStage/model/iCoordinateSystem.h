#ifndef IMODELSTAGE_MODEL_ICOORDINATESYSTEM_H
#define IMODELSTAGE_MODEL_ICOORDINATESYSTEM_H

#include <osg/Vec3f>

// A frame in space: an origin and three axes.
class iCoordinateSystem {
public:
    iCoordinateSystem() = default;
    iCoordinateSystem(osg::Vec3f const& origin, osg::Vec3f const& x, osg::Vec3f const& y, osg::Vec3f const& z)
        : origin(origin), xAxis(x), yAxis(y), zAxis(z)
    {
    }

    void set(osg::Vec3f const& o, osg::Vec3f const& x, osg::Vec3f const& y, osg::Vec3f const& z)
    {
        origin = o;
        xAxis = x;
        yAxis = y;
        zAxis = z;
    }

    bool operator!=(iCoordinateSystem const& other) const
    {
        return origin != other.origin || xAxis != other.xAxis || yAxis != other.yAxis || zAxis != other.zAxis;
    }
    bool operator==(iCoordinateSystem const& other) const { return !(*this != other); }

    osg::Vec3f origin{0.0f, 0.0f, 0.0f};
    osg::Vec3f xAxis{1.0f, 0.0f, 0.0f};
    osg::Vec3f yAxis{0.0f, 1.0f, 0.0f};
    osg::Vec3f zAxis{0.0f, 0.0f, 1.0f};
};

#endif
