#ifndef IMODELSTAGE_FRAME_IVALUETYPES_H
#define IMODELSTAGE_FRAME_IVALUETYPES_H

// The frame's names of property types. Each is its C++ type under a name
// that tells a generic editor how to show it; the name is what a property
// registers as its type name.

#include <iModelStage/frame/iCheckedDouble.h>
#include <iModelStage/frame/iMapList.h>
#include <iModelStage/frame/iSimpleMapListPtr.h>
#include <iModelStage/frame/iStringList.h>
#include <iModelStage/frame/iptrStringList.h>

#include <osg/Vec4f>
#include <osg/observer_ptr>

#include <string>

class iMaterialGroup;
class iImageGroup;

typedef osg::Vec4f iColor4;
typedef bool iBoolSwitch;
typedef std::string iStringFileName;
typedef double iScaleUnit;
typedef osg::observer_ptr<iMaterialGroup> iMaterialGroupObserver;
typedef osg::observer_ptr<iImageGroup> iImageObserver;
typedef std::string iImagePreview;
typedef osg::observer_ptr<iMaterialGroup> iMaterialPreview;

#endif
