#include "shapes/wbLeaderRenderer.h"

#include "shapes/wbRenderSupport.h"

#include <iModelStage/dimensioning/iLeader.h>

I_REGISTER_CLASS(wbLeaderRenderer)

void wbLeaderRenderer::rebuildGeometry(iGeometricGroup* group)
{
    auto* leader = dynamic_cast<iLeader*>(group);
    if (!leader)
        return;
    float const side = leader->get_flip() ? -1.0f : 1.0f;
    float const up = float(leader->get_hleaderline());
    osg::Vec3f const knee(side * float(leader->get_bleaderline()), up, 0.0f);
    osg::Vec3f const landing = knee + osg::Vec3f(side * float(leader->get_lenlandingline()), 0.0f, 0.0f);

    osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
    vertices->push_back(osg::Vec3f());
    vertices->push_back(knee);
    vertices->push_back(landing);
    osg::ref_ptr<osg::DrawElementsUInt> heads = new osg::DrawElementsUInt(GL_TRIANGLES);
    float const head = wbRender::arrowLength(leader->get_arrowheadlength(), leader->get_charsize());
    wbRender::addArrowHead(vertices.get(), heads.get(), osg::Vec3f(), -knee, head,
                           wbRender::arrowBase(leader->get_arrowheadbase(), head));

    osg::Geometry* marks = wbRender::coloredGeometry(leader, vertices.get());
    marks->addPrimitiveSet(wbRender::chainSegments(3, false));
    marks->addPrimitiveSet(heads.get());
    wbRender::addDrawable(this, marks, false);

    std::string const text = leader->getText().empty() ? leader->get_name() : leader->getText();
    if (text.empty())
        return;
    osg::Vec3f const at = (knee + landing) * 0.5f + osg::Vec3f(0.0f, head * 0.25f, 0.0f);
    wbRender::layText(leader->getTextDrawable(), text, at, leader->get_charsize(), osgText::Text::CENTER_BOTTOM,
                      leader->getColor());
    wbRender::addDrawable(this, leader->getTextDrawable(), false);
}
