#ifndef IMODELSTAGE_MODEL_NODELIST_H
#define IMODELSTAGE_MODEL_NODELIST_H

#include <osg/Node>
#include <osg/ref_ptr>

#include <vector>

// The library's usual list of objects.
typedef std::vector<osg::ref_ptr<osg::Node>> NodeList;

#endif
