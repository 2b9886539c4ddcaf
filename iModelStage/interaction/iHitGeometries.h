#ifndef IMODELSTAGE_INTERACTION_IHITGEOMETRIES_H
#define IMODELSTAGE_INTERACTION_IHITGEOMETRIES_H

#include <iModelStage/frame/iExport.h>

#include <osg/Group>
#include <osg/Node>
#include <osg/ref_ptr>
#include <osgUtil/PolytopeIntersector>

#include <utility>
#include <vector>

class iGeometricsLayer;
class iNodeLayer;
class iViewer;

// The document objects under a window position (5 pixels to each side),
// nearest first, each once; neither selectability nor filter is checked.
IMODELSTAGE_EXPORT bool iHitGeometries(iNodeLayer* layer, iViewer* viewer, int x, int y,
                                       std::vector<osg::ref_ptr<osg::Node>>& result);

// The (document object, drawable node) pair a hit's node path stands for,
// or false when the hit is on something no document object owns or the
// viewer's renderer masks hide.
IMODELSTAGE_EXPORT bool findSelectablePairs(std::vector<osg::Node*>& nodePath, iNodeLayer* layer, iViewer* viewer,
                                            osg::Group** parent, osg::Node** node);

// Climbs from start to the document object of layer whose renderer
// container lies on the way; rendererChild receives the renderer's own
// subgraph. Null when there is none.
IMODELSTAGE_EXPORT osg::Group* findParentGeometricContainer(iNodeLayer* layer, osg::Node* start,
                                                            std::vector<osg::Node*>& nodePath,
                                                            osg::Node** rendererChild);

// Intersections over a window rectangle with the layer's editing and
// interactive sublayers hidden, so handles and tool feedback are never hit.
IMODELSTAGE_EXPORT bool iPolytopeHits(iGeometricsLayer* layer, iViewer* viewer, double x0, double y0, double x1,
                                      double y1, osgUtil::PolytopeIntersector::Intersections& out);

// The (document object, drawable node) pairs of the hits the clip box
// leaves, in hit order, repeats included.
IMODELSTAGE_EXPORT std::vector<std::pair<osg::Group*, osg::Node*>>
iSelectablePairs(osgUtil::PolytopeIntersector::Intersections const& hits, iNodeLayer* layer, iViewer* viewer);

// Whether a hit lies in the part the viewer's clip box cuts away.
IMODELSTAGE_EXPORT bool iIsHitClipped(iViewer* viewer, osgUtil::PolytopeIntersector::Intersection const& hit);

#endif
