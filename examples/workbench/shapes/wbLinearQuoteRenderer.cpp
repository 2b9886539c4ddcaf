#include "shapes/wbLinearQuoteRenderer.h"

#include "shapes/wbRenderSupport.h"

#include <iModelStage/dimensioning/iLinearQuote.h>

#include <cstdio>

I_REGISTER_CLASS(wbLinearQuoteRenderer)

namespace {

std::string measure(double length)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.2f", length);
    return text;
}

} // namespace

void wbLinearQuoteRenderer::rebuildGeometry(iGeometricGroup* group)
{
    auto* quote = dynamic_cast<iLinearQuote*>(group);
    if (!quote)
        return;
    float const length = (quote->getEndPoint() - quote->getStartPoint()).length();
    float const offset = float(quote->get_offset());
    // The side of the segment on which the dimension line stands.
    float const side = offset < 0.0f ? -1.0f : 1.0f;
    float const gap = float(quote->get_extlineoffset()) * side;
    float const head = wbRender::arrowLength(quote->get_arrowheadlength(), quote->get_charsize());
    float const past = head * 0.5f * side;

    osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
    for (osg::Vec3f const& v : {osg::Vec3f(0.0f, offset, 0.0f), osg::Vec3f(length, offset, 0.0f),
                                osg::Vec3f(0.0f, gap, 0.0f), osg::Vec3f(0.0f, offset + past, 0.0f),
                                osg::Vec3f(length, gap, 0.0f), osg::Vec3f(length, offset + past, 0.0f)})
        vertices->push_back(v);
    osg::ref_ptr<osg::DrawElementsUInt> lines = new osg::DrawElementsUInt(GL_LINES);
    for (unsigned int i = 0; i < 6; ++i)
        lines->push_back(i);
    osg::ref_ptr<osg::DrawElementsUInt> heads = new osg::DrawElementsUInt(GL_TRIANGLES);
    float const base = wbRender::arrowBase(quote->get_arrowheadbase(), head);
    wbRender::addArrowHead(vertices.get(), heads.get(), (*vertices)[0], osg::Vec3f(-1.0f, 0.0f, 0.0f), head, base);
    wbRender::addArrowHead(vertices.get(), heads.get(), (*vertices)[1], osg::Vec3f(1.0f, 0.0f, 0.0f), head, base);

    osg::Geometry* marks = wbRender::coloredGeometry(quote, vertices.get());
    marks->addPrimitiveSet(lines.get());
    marks->addPrimitiveSet(heads.get());
    wbRender::addDrawable(this, marks, false);

    bool const flipped = quote->get_fliptext();
    quote->setText(measure(length));
    osg::Vec3f const at(length * 0.5f, offset + float(quote->get_textoffset()) + head * 0.25f, 0.0f);
    wbRender::layText(quote->getTextDrawable(), quote->getText(), at, quote->get_charsize(),
                      flipped ? osgText::Text::CENTER_TOP : osgText::Text::CENTER_BOTTOM, quote->getColor(), flipped);
    wbRender::addDrawable(this, quote->getTextDrawable(), false);
}
