#ifndef IMODELSTAGE_GEOMETRY_IFRAMEINSTANCE_H
#define IMODELSTAGE_GEOMETRY_IFRAMEINSTANCE_H

#include <iModelStage/frame/iRoot.h>

#include <osg/Referenced>
#include <osg/ref_ptr>

#include <memory>

// Lets go of an object that the class table made. A reference-counted one
// goes through its count, so that it survives while something else still
// holds it; any other is deleted.
struct iFrameInstanceDisposer {
    void operator()(iRoot* object) const
    {
        if (auto* counted = dynamic_cast<osg::Referenced*>(object)) {
            osg::ref_ptr<osg::Referenced> last = counted;
            return;
        }
        delete object;
    }
};

template <class T>
using iFrameInstancePtr = std::unique_ptr<T, iFrameInstanceDisposer>;

// A new instance of a registered class, or null when the class table does
// not know the name or the name makes something that is not a T.
template <class T>
iFrameInstancePtr<T> iNewFrameInstance(char const* className)
{
    iFrameInstancePtr<iRoot> made(className ? iRoot::newClass(className) : nullptr);
    T* typed = dynamic_cast<T*>(made.get());
    if (!typed)
        return nullptr;
    made.release();
    return iFrameInstancePtr<T>(typed);
}

#endif
