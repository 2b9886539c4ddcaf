#ifndef IMODELSTAGE_INTERACTION_IIAPOINT_H
#define IMODELSTAGE_INTERACTION_IIAPOINT_H

#include <osg/Vec3f>

// A position as the interactive tools see it, four ways at once: the
// normalised cursor (-1 to 1, z 0), the cursor in window pixels (z 0), the
// point in the frame of the viewer's input plane, and the point in world
// space. A typed point carries zero cursor positions.
class iIAPoint {
public:
    iIAPoint() = default;
    iIAPoint(osg::Vec3f const& viewport, osg::Vec3f const& window, osg::Vec3f const& local, osg::Vec3f const& global)
        : _viewport(viewport), _window(window), _local(local), _global(global)
    {
    }

    osg::Vec3f const& getViewportPos() const { return _viewport; }
    void setViewportPos(osg::Vec3f const& p) { _viewport = p; }
    osg::Vec3f const& getWindowPos() const { return _window; }
    void setWindowPos(osg::Vec3f const& p) { _window = p; }
    osg::Vec3f const& getLocalPos() const { return _local; }
    void setLocalPos(osg::Vec3f const& p) { _local = p; }
    osg::Vec3f const& getGlobalPos() const { return _global; }
    void setGlobalPos(osg::Vec3f const& p) { _global = p; }

private:
    osg::Vec3f _viewport{0.0f, 0.0f, 0.0f};
    osg::Vec3f _window{0.0f, 0.0f, 0.0f};
    osg::Vec3f _local{0.0f, 0.0f, 0.0f};
    osg::Vec3f _global{0.0f, 0.0f, 0.0f};
};

#endif
