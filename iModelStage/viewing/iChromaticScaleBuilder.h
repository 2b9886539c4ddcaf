#ifndef IMODELSTAGE_VIEWING_ICHROMATICSCALEBUILDER_H
#define IMODELSTAGE_VIEWING_ICHROMATICSCALEBUILDER_H

#include <iModelStage/frame/iObjectMacros.h>
#include <iModelStage/model/iTransformGroup.h>

#include <osg/Camera>
#include <osg/Geode>
#include <osg/Object>
#include <osg/Vec4f>
#include <osg/ref_ptr>

#include <QPointer>

#include <string>
#include <vector>

class iViewer;

// A colour legend for result plots: a vertical bar graded from a minimum
// to a maximum value, a number at each step, a title and an optional marker
// at a current value. The application holds the builder; the legend lives
// in a viewer, either in a screen-space camera of its own (pixels) or in the
// viewer's view layer (model units). Nothing of it goes into the document.
//
// Most setters only store; rebuildGeometry shows the change. The legend
// leaves its viewer when the builder goes.
class IMODELSTAGE_EXPORT iChromaticScaleBuilder : public osg::Object {
public:
    enum iViewSpace : int { iViewSpaceScreen = 0, iViewSpaceModel = 1 };
    // Right puts the numbers to the right of the bar, any other value left.
    enum iTextPosition : int { iTextLeft = 0, iTextRight = 1 };

    using UnitConverter = double (*)(double, void*);

    iChromaticScaleBuilder();
    // A copy takes the settings, not the viewer nor the scene it built.
    iChromaticScaleBuilder(iChromaticScaleBuilder const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    I_OSG_OBJECT(iChromaticScaleBuilder)

    void setNumSteps(int steps) { _numSteps = steps; }
    void setValMin(double value) { _valMin = value; }
    void setValMax(double value) { _valMax = value; }
    void setHeight(double height) { _height = height; }
    void setWidth(double width) { _width = width; }
    // Empty: the default grading of iColorRange.
    void setColorsRange(std::vector<osg::Vec4f> const& colors) { _colorsRange = colors; }
    std::vector<osg::Vec4f> getColorsRange() const { return _colorsRange; }
    void setTextValuesPosition(iTextPosition position) { _textValuesPosition = position; }
    void setPrecision(int precision) { _precision = precision; }
    void setTitle(std::string const& title) { _title = title; }
    void setTextSize(float size) { _textSize = size; }
    float getTextSize() const { return _textSize; }
    void setTextColor(osg::Vec4f const& color) { _textColor = color; }
    osg::Vec4f getTextColor() const { return _textColor; }
    // The numbers go through converter(value, data) when both are set.
    void setUnitConverterCallbackAndData(UnitConverter converter, void* data);

    // These show at once.
    void setCurrentValue(double value);
    void showCurrentValue(bool show);
    void setPosition(float x, float y);
    void getPosition(float& x, float& y) const;
    void setDrawRect(bool draw);
    bool getDrawRect() const { return _drawRect; }
    void setViewSpace(iViewSpace space);
    iViewSpace getViewSpace() const { return _viewSpace; }

    // Takes the legend out of the old viewer; draws in the new one at the
    // next rebuildGeometry.
    void setViewer(iViewer* viewer);
    void rebuildGeometry();
    void resetViewer();

    // The extent of what is built; 0, 0 when nothing is.
    void getSize(float& width, float& height);
    // The viewer's viewport in pixels; 0, 0 without one.
    void getViewportSize(int& width, int& height);

protected:
    ~iChromaticScaleBuilder() override;

    // The bar, its numbers and title; null for an invalid range.
    osg::Geode* buildGeode();
    void updateValueIndicator();
    double unitConvert(double value);

    iTransformGroup* getRoot() const { return _root.get(); }
    iTransformGroup* getIndicator() const { return _indicator.get(); }
    osg::Camera* getCamera() const { return _camera.get(); }

private:
    osg::Group* viewLayer() const;
    osg::Camera* makeCamera();
    // A number or the title, as all texts of the legend are made.
    osg::ref_ptr<osg::Drawable> makeText(std::string const& text, osg::Vec4f const& color, int alignment,
                                         osg::Vec3f const& position) const;
    std::string formatValue(double value);

    int _numSteps = 15;
    double _valMin = 0.0;
    double _valMax = 0.0;
    double _height = 400.0;
    double _width = 30.0;
    std::vector<osg::Vec4f> _colorsRange;
    iTextPosition _textValuesPosition = iTextRight;
    double _currentValue = 0.0;
    bool _showCurrent = false;
    float _posX = 0.0f;
    float _posY = 0.0f;
    int _precision = 2;
    std::string _title;
    QPointer<iViewer> _viewer;
    osg::ref_ptr<osg::Camera> _camera;
    osg::ref_ptr<iTransformGroup> _root;
    osg::ref_ptr<iTransformGroup> _indicator;
    bool _drawRect = false;
    UnitConverter _unitConverter = nullptr;
    void* _unitConverterData = nullptr;
    float _textSize = 12.0f;
    osg::Vec4f _textColor{0.0f, 0.0f, 0.0f, 1.0f};
    iViewSpace _viewSpace = iViewSpaceScreen;
};

#endif
