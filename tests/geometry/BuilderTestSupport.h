#ifndef IMODELSTAGE_TESTS_GEOMETRY_BUILDER_TEST_SUPPORT_H
#define IMODELSTAGE_TESTS_GEOMETRY_BUILDER_TEST_SUPPORT_H

#include <osg/Array>
#include <osg/ref_ptr>

#include <vector>

// A new array of the given points.
inline osg::ref_ptr<osg::Vec3Array> vec3s(std::vector<osg::Vec3f> const& values)
{
    osg::ref_ptr<osg::Vec3Array> array = new osg::Vec3Array;
    for (osg::Vec3f const& v : values)
        array->push_back(v);
    return array;
}

#endif
