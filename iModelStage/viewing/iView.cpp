#include <iModelStage/viewing/iView.h>

#include <iModelStage/geometry/iInputPlane.h>

namespace {

// Per lookup: camera position, camera X, Y, Z, then the input plane's X, Y,
// Z (the plane's origin is always the world origin). The free and last
// rows repeat an axis on purpose: they are kept as they are.
struct LookupRow {
    float camera[12];
    float plane[9];
};

LookupRow const lookupTable[9] = {
    {{-100, 0, 0, 0, -1, 0, 0, 0, 1, -1, 0, 0}, {0, -1, 0, 0, 0, -1, 1, 0, 0}},
    {{100, 0, 0, 0, 1, 0, 0, 0, 1, 1, 0, 0}, {0, 1, 0, 0, 0, 1, 1, 0, 0}},
    {{0, 0, 100, 1, 0, 0, 0, 1, 0, 0, 0, 1}, {1, 0, 0, 0, 1, 0, 0, 0, 1}},
    {{0, 0, -100, 1, 0, 0, 0, -1, 0, 0, 0, -1}, {-1, 0, 0, 0, -1, 0, 0, 0, 1}},
    {{0, -100, 0, 1, 0, 0, 0, 0, 1, 0, -1, 0}, {1, 0, 0, 0, 0, -1, 0, 1, 0}},
    {{0, 100, 0, -1, 0, 0, 0, 0, 1, 0, 1, 0}, {-1, 0, 0, 0, 0, 1, 0, 1, 0}},
    {{0, 0, 100, 1, 0, 0, 0, 1, 0, 0, 0, 1}, {1, 0, 0, 0, 1, 0, 0, 0, 1}},
    {{0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 1}, {1, 0, 0, 0, 1, 0, 0, 0, 1}},
    {{100, 0, 0, 0, 0, 1, 0, 0, 1, -1, 0, 0}, {1, 0, 0, 0, 1, 0, 0, 0, 1}},
};

bool validLookup(int lookup)
{
    return lookup >= iView::iLookupLeft && lookup <= iView::iLookupLast;
}

} // namespace

iView::iView() : m_plane(new iInputPlane)
{
    m_home = m_state;
    setViewLookup(iLookupAxonometric);
}

iView::iView(iView const& other) = default;
iView& iView::operator=(iView const& other) = default;
iView::~iView() = default;

iInputPlane* iView::getInputPlane() const
{
    return m_plane.get();
}

void iView::setViewLookup(iViewLookup lookup)
{
    if (!validLookup(lookup))
        return;
    m_lookup = lookup;
    float const* row = lookupTable[lookup].camera;
    m_state.setLookupBasis(row);
    osg::Matrixd const inverseView(row[3], row[4], row[5], 0.0, row[6], row[7], row[8], 0.0, row[9], row[10],
                                   row[11], 0.0, row[0], row[1], row[2], 1.0);
    m_state.setViewMatrices(osg::Matrixd::inverse(inverseView), inverseView);
    m_home = m_state;
    updateInputPlane();
}

void iView::updateInputPlane()
{
    if (!m_plane.valid() || !validLookup(m_lookup))
        return;
    float const* axes = lookupTable[m_lookup].plane;
    m_plane->setMatrix(osg::Matrixd(axes[0], axes[1], axes[2], 0.0, axes[3], axes[4], axes[5], 0.0, axes[6], axes[7],
                                    axes[8], 0.0, 0.0, 0.0, 0.0, 1.0));
}
