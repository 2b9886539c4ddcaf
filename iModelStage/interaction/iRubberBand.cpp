#include <iModelStage/interaction/iRubberBand.h>

#include <iModelStage/viewing/iViewer.h>

#include <osg/StateSet>

void iRubberBand::show(iViewer* viewer, osg::Vec3f const& corner, osg::Vec4f const& colour)
{
    if (!viewer)
        return;
    osg::Viewport const* viewport = viewer->getCamera()->getViewport();
    double const width = viewport ? viewport->width() : 1.0;
    double const height = viewport ? viewport->height() : 1.0;

    _camera = new osg::Camera;
    _camera->setProjectionMatrix(osg::Matrixd::ortho2D(0.0, width, 0.0, height));
    _camera->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
    _camera->setViewMatrix(osg::Matrixd::identity());
    _camera->setClearMask(GL_DEPTH_BUFFER_BIT);
    _camera->setRenderOrder(osg::Camera::POST_RENDER);
    _camera->setAllowEventFocus(false);
    osg::StateSet* state = _camera->getOrCreateStateSet();
    state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    state->setMode(GL_BLEND, osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
    state->setRenderingHint(osg::StateSet::TRANSPARENT_BIN);

    osg::ref_ptr<osg::Vec3Array> corners = new osg::Vec3Array(4);
    for (osg::Vec3f& c : *corners)
        c = corner;
    osg::ref_ptr<osg::Vec4Array> colours = new osg::Vec4Array;
    colours->push_back(colour);
    _geometry = new osg::Geometry;
    _geometry->setUseDisplayList(false);
    _geometry->setVertexArray(corners.get());
    _geometry->setColorArray(colours.get(), osg::Array::BIND_OVERALL);
    _geometry->addPrimitiveSet(new osg::DrawArrays(GL_QUADS, 0, 4));

    _geode = new osg::Geode;
    _geode->addDrawable(_geometry.get());
    _camera->addChild(_geode.get());
    viewer->getUILayer()->addChild(_camera.get());
}

void iRubberBand::span(osg::Vec3f const& from, osg::Vec3f const& to)
{
    if (!_geometry)
        return;
    auto* corners = static_cast<osg::Vec3Array*>(_geometry->getVertexArray());
    (*corners)[0].set(from.x(), from.y(), 0.0f);
    (*corners)[1].set(to.x(), from.y(), 0.0f);
    (*corners)[2].set(to.x(), to.y(), 0.0f);
    (*corners)[3].set(from.x(), to.y(), 0.0f);
    corners->dirty();
    _geometry->dirtyBound();
}

void iRubberBand::hide(iViewer* viewer)
{
    if (viewer && _camera)
        viewer->getUILayer()->removeChild(_camera.get());
}

bool iRubberBand::isShownIn(iViewer* viewer) const
{
    return viewer && _camera && viewer->getUILayer()->containsNode(_camera.get());
}
