#ifndef IMODELSTAGE_VIEWING_IVIEW_H
#define IMODELSTAGE_VIEWING_IVIEW_H

#include <iModelStage/viewing/iViewState.h>

#include <osg/ref_ptr>

class iInputPlane;

// One saved camera of a viewer: its state, the home state it returns to,
// its projection kind, the named lookup it was set to and the input plane
// that goes with that lookup. Copies share the input plane.
class IMODELSTAGE_EXPORT iView {
public:
    enum iProjectionType : int { iProjectionPerspective = 0, iProjectionOrtho = 1 };
    enum iViewLookup : int {
        iLookupLeft = 0,
        iLookupRight,
        iLookupTop,
        iLookupBottom,
        iLookupFront,
        iLookupBack,
        iLookupAxonometric,
        iLookupFree,
        iLookupLast = 8
    };

    iView();
    iView(iView const& other);
    iView& operator=(iView const& other);
    ~iView();

    iViewState& getState() { return m_state; }
    iViewState const& getState() const { return m_state; }
    iViewState& getHomeState() { return m_home; }
    iViewState const& getHomeState() const { return m_home; }

    // Every value other than iProjectionOrtho draws in perspective.
    iProjectionType getProjectionType() const { return m_projectionType; }
    void setProjectionType(iProjectionType type) { m_projectionType = type; }
    bool isPerspective() const { return m_projectionType != iProjectionOrtho; }

    iViewLookup getViewLookup() const { return m_lookup; }
    // Places the camera and the input plane as the lookup's table row says,
    // and makes that the home state. Values outside 0..8 are ignored.
    void setViewLookup(iViewLookup lookup);

    void saveAsHome() { m_home = m_state; }
    void resetToHome() { m_state = m_home; }

    iInputPlane* getInputPlane() const;
    void updateInputPlane();

private:
    iViewState m_state;
    iProjectionType m_projectionType = iProjectionOrtho;
    iViewLookup m_lookup = iLookupAxonometric;
    iViewState m_home;
    osg::ref_ptr<iInputPlane> m_plane;
};

#endif
