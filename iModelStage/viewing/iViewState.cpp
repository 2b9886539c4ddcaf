#include <iModelStage/viewing/iViewState.h>

#include <algorithm>

void iViewState::setLookupBasis(float const basis[12])
{
    std::copy(basis, basis + 12, m_basis);
}
