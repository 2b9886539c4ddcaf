#ifndef IMODELSTAGE_DIMENSIONING_IQUOTEHANDOVER_H
#define IMODELSTAGE_DIMENSIONING_IQUOTEHANDOVER_H

#include <iModelStage/frame/iExport.h>

namespace osg {
class Group;
}
class iGeometricsLayer;
class iTransformGroup;

// The last act of a dimensioning tool: the object made in the tool's
// feedback layer enters the document where it was seen. The feedback layer
// follows the input plane, the document group does not, so the world
// placement is taken before the move and given back after it.
class IMODELSTAGE_EXPORT iQuoteHandOver {
public:
    iQuoteHandOver() = delete;

    // Adds the object to the layer (with its subtree) and, unless it is to
    // stay in the feedback layer until the tool is popped, takes it out of
    // there. False without a layer.
    static bool handOver(iTransformGroup* object, iGeometricsLayer* layer, osg::Group* feedback, bool keepInFeedback);
};

#endif
