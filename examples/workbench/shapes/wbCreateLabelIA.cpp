#include "shapes/wbCreateLabelIA.h"

#include <iModelStage/frame/iTranslate.h>

I_REGISTER_CLASS(wbCreateLabelIA)
I_REGISTER_PROPERTY_AS(wbCreateLabelIA, std::string, "std::string", text, "Geometry")
I_REGISTER_PROPERTY(wbCreateLabelIA, double, height, "Geometry")

wbCreateLabelIA::wbCreateLabelIA()
{
    _text = iTranslate("Testo");
    _height = 0.5;
    setNumSteps(1);
    addShapeSteps({"Cliccare per inserire l'etichetta", "Etichetta inserita"});
}

iGeometricGroup* wbCreateLabelIA::newShape()
{
    auto* shape = new wbLabel;
    shape->set_text(_text);
    shape->set_height(_height);
    return shape;
}

bool wbCreateLabelIA::move(iIAPoint const& p)
{
    bool const result = wbCreateShapeIA::move(p);
    if (getCurrentStep() == 0)
        showShapeAt(p.getLocalPos());
    return result;
}

bool wbCreateLabelIA::release(iIAPoint const& p)
{
    showShapeAt(p.getLocalPos());
    return wbCreateShapeIA::release(p);
}
