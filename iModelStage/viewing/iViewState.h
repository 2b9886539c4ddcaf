#ifndef IMODELSTAGE_VIEWING_IVIEWSTATE_H
#define IMODELSTAGE_VIEWING_IVIEWSTATE_H

#include <iModelStage/frame/iExport.h>

#include <osg/Matrixd>

// The state of one camera: the orthographic window and depth range, the
// distance to the point looked at, and the matrices last computed for it.
// The window is kept as half sizes around the camera's own position; the
// projection recentres it (see iViewer::updateProjection).
class IMODELSTAGE_EXPORT iViewState {
public:
    iViewState() = default;

    double getNear() const { return m_near; }
    double getFar() const { return m_far; }
    double getLeft() const { return m_left; }
    double getTop() const { return m_top; }
    double getRight() const { return m_right; }
    double getBottom() const { return m_bottom; }
    double getDistance() const { return m_distance; }
    void setNear(double value) { m_near = value; }
    void setFar(double value) { m_far = value; }
    void setLeft(double value) { m_left = value; }
    void setTop(double value) { m_top = value; }
    void setRight(double value) { m_right = value; }
    void setBottom(double value) { m_bottom = value; }
    void setDistance(double value) { m_distance = value; }

    osg::Matrixd const& getProjectionMatrix() const { return m_projection; }
    osg::Matrixd const& getInverseViewMatrix() const { return m_inverseView; }
    osg::Matrixd const& getViewMatrix() const { return m_view; }
    void setProjectionMatrix(osg::Matrixd const& m) { m_projection = m; }
    // Each pair is stored as given: the caller keeps them inverse to each
    // other.
    void setViewMatrices(osg::Matrixd const& view, osg::Matrixd const& inverseView)
    {
        m_view = view;
        m_inverseView = inverseView;
    }

    // Position and three axes of the lookup row last applied.
    float const* getLookupBasis() const { return m_basis; }
    void setLookupBasis(float const basis[12]);

private:
    double m_near = 0.01;
    double m_far = 10000.0;
    double m_left = -8.0;
    double m_top = 8.0;
    double m_right = 8.0;
    double m_bottom = -8.0;
    double m_distance = 100.0;
    osg::Matrixd m_projection;
    osg::Matrixd m_inverseView;
    osg::Matrixd m_view;
    float m_basis[12] = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1};
};

#endif
