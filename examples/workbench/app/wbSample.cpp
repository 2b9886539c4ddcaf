#include "app/wbSample.h"

#include "app/wbDocument.h"

#include "shapes/wbBox.h"
#include "shapes/wbCylinder.h"
#include "shapes/wbLabel.h"
#include "shapes/wbPolyline.h"

#include <iModelStage/dimensioning/iLinearQuote.h>
#include <iModelStage/geometry/iGeometricsLayer.h>

namespace {

template <class Shape>
Shape* place(iGeometricsLayer* layer, char const* name, osg::Vec3f const& at, osg::Vec4f const& colour)
{
    osg::ref_ptr<Shape> shape = new Shape;
    shape->set_name(name);
    shape->setColor(colour);
    shape->setPosition(at);
    layer->addObject(shape.get(), true);
    return shape.get();
}

void box(iGeometricsLayer* layer, char const* name, osg::Vec3f const& at, osg::Vec3f const& size,
         osg::Vec4f const& colour)
{
    wbBox* made = place<wbBox>(layer, name, at, colour);
    made->set_sizex(size.x());
    made->set_sizey(size.y());
    made->set_sizez(size.z());
}

// A dimension outside the plinth, its line a little away from the measured
// edge, dark and large enough to read in the plan.
void dimension(iGeometricsLayer* layer, char const* name, osg::Vec3f const& from, osg::Vec3f const& to)
{
    osg::ref_ptr<iLinearQuote> quote = new iLinearQuote;
    quote->set_name(name);
    // One point at a time: each places the dimension in the plan.
    quote->setNormal({0, 0, 1});
    quote->setStartPoint(from);
    quote->setEndPoint(to);
    quote->set_offset(-0.8);
    quote->set_charsize(0.45);
    quote->setColor({0.08f, 0.08f, 0.1f, 1});
    layer->addObject(quote.get(), true);
}

} // namespace

QString wbSample::write(wbDocument* document, QString const& path)
{
    document->newDocument();
    iGeometricsLayer* layer = wbDocument::geometrics();
    if (!layer)
        return QStringLiteral("no drawing layer");
    box(layer, "plinth", {0, 0, 0}, {8, 5, 0.5f}, {0.75f, 0.72f, 0.66f, 1});
    box(layer, "block", {1, 1, 0.5f}, {3, 2, 2}, {0.85f, 0.25f, 0.2f, 1});
    wbCylinder* column = place<wbCylinder>(layer, "column", {6, 2.5f, 0.5f}, {0.2f, 0.45f, 0.85f, 1});
    column->set_radius(0.8);
    column->set_height(3.5);
    wbPolyline* rail = place<wbPolyline>(layer, "rail", {0, 0, 0.52f}, {0.1f, 0.6f, 0.3f, 1});
    for (osg::Vec3f const& v : {osg::Vec3f(0.5f, 4.5f, 0), osg::Vec3f(4.5f, 4.5f, 0), osg::Vec3f(7.5f, 3.5f, 0),
                                osg::Vec3f(7.5f, 0.5f, 0)})
        rail->addVertex(v);
    wbLabel* label = place<wbLabel>(layer, "label", {0.5f, -2.8f, 0}, {0.1f, 0.1f, 0.1f, 1});
    label->set_text("Workbench sample");
    label->set_height(0.6);
    // Just above the plinth's top, which would hide them in the plan.
    dimension(layer, "width", {0, 0, 0.52f}, {8, 0, 0.52f});
    dimension(layer, "depth", {8, 0, 0.52f}, {8, 5, 0.52f});
    return document->saveAs(path);
}
