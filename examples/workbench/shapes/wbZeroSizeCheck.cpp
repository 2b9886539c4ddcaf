#include "shapes/wbZeroSizeCheck.h"

#include "shapes/wbBox.h"
#include "shapes/wbCylinder.h"
#include "shapes/wbLabel.h"
#include "shapes/wbPolyline.h"

#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/model/iBaseModel.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/reporting/iExceptionItem.h>

#include <algorithm>

I_REGISTER_CLASS(wbZeroSizeCheck)

char const* const wbZeroSizeCheck::ItemId = "wbZeroSizeCheck::zerosize";

namespace {

bool collapsed(wbPolyline* polyline)
{
    osg::Vec3Array const& vertices = *polyline->getVertices();
    if (vertices.size() < 2)
        return true;
    return std::all_of(vertices.begin(), vertices.end(), [&](osg::Vec3f const& v) { return v == vertices[0]; });
}

} // namespace

bool wbZeroSizeCheck::hasZeroSize(osg::Node* node)
{
    if (auto* box = dynamic_cast<wbBox*>(node))
        return box->get_sizex() <= 0.0 || box->get_sizey() <= 0.0 || box->get_sizez() <= 0.0;
    if (auto* cylinder = dynamic_cast<wbCylinder*>(node))
        return cylinder->get_radius() <= 0.0 || cylinder->get_height() <= 0.0;
    if (auto* polyline = dynamic_cast<wbPolyline*>(node))
        return collapsed(polyline);
    if (auto* label = dynamic_cast<wbLabel*>(node))
        return label->get_text().empty() || label->get_height() <= 0.0;
    return false;
}

iBaseModel* wbZeroSizeCheck::checkedModel() const
{
    if (auto* model = dynamic_cast<iBaseModel*>(getDataObject()))
        return model;
    return iLayersManager::getLayer("iGeometricsLayer");
}

std::string wbZeroSizeCheck::getTitle()
{
    return iTranslate("Oggetti di dimensione nulla");
}

void wbZeroSizeCheck::handleExceptions()
{
    iBaseModel* model = checkedModel();
    if (!model)
        return;
    NodeList objects;
    model->getObjectsList(model->getObjectsRoot(), objects, nullptr);
    begin();
    setNumSteps(static_cast<int>(objects.size()));
    int done = 0;
    for (osg::ref_ptr<osg::Node> const& object : objects) {
        setValue(++done);
        if (!hasZeroSize(object.get()))
            continue;
        iExceptionItem item(ItemId, iExceptionItem::Warning, dynamic_cast<iNodeGroup*>(object.get()),
                            iTranslate("Oggetto di dimensione nulla"),
                            iTranslate("L'oggetto non ha estensione: non si vede e non si puo' selezionare"), "");
        pushItem(item);
    }
    end();
}
