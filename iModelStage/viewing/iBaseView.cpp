#include <iModelStage/viewing/iBaseView.h>

#include <iModelStage/model/iBaseModel.h>

I_REGISTER_CLASS(iBaseView)

iBaseView::iBaseView() = default;

// The receiver base ends every connection.
iBaseView::~iBaseView() = default;

// Every signal of the model that a view hears, with its slot, in the order
// of connection.
template <class Visit> void iBaseView::forEachModelSignal(iBaseModel* model, Visit visit)
{
    visit(model->sigObjectAdded, &iBaseView::slotObjectAdded);
    visit(model->sigObjectRemoved, &iBaseView::slotObjectRemoved);
    visit(model->sigAllObjectsRemoved, &iBaseView::slotAllObjectsRemoved);
    visit(model->sigBeginRemovingSelectedObjects, &iBaseView::slotBeginRemovingSelectedObjects);
    visit(model->sigSelectedObjectsRemoved, &iBaseView::slotSelectedObjectsRemoved);
    visit(model->sigModelChanged, &iBaseView::slotModelChanged);
    visit(model->sigObjectsGroupChanged, &iBaseView::slotObjectsGroupChanged);
    visit(model->sigCurrentRootObjectChanged, &iBaseView::slotCurrentRootObjectChanged);
    visit(model->sigObjectSelectionAdded, &iBaseView::slotObjectSelectionAdded);
    visit(model->sigObjectSelectionRemoved, &iBaseView::slotObjectSelectionRemoved);
    visit(model->sigObjectsSelectionCleared, &iBaseView::slotObjectsSelectionCleared);
    visit(model->sigObjectsSelectionChanged, &iBaseView::slotObjectsSelectionChanged);
    visit(model->sigSelectionFilterChanged, &iBaseView::slotSelectionFilterChanged);
    visit(model->sigNodeFlagChanged, &iBaseView::slotNodeFlagChanged);
    visit(model->sigNodeFlagsChanged, &iBaseView::slotNodeFlagsChanged);
    visit(model->sigNodesFlagsChanged, &iBaseView::slotNodesFlagsChanged);
    visit(model->sigBeginParentChanging, &iBaseView::slotBeginParentChanging);
    visit(model->sigParentChanged, &iBaseView::slotParentChanged);
    visit(model->sigEndParentChanging, &iBaseView::slotEndParentChanging);
    visit(model->sigDestroyed, &iBaseView::slotModelDestroyed);
}

bool iBaseView::canSetModel(iBaseModel* model)
{
    if (!model)
        return false;
    return m_modelFilter.empty() || m_modelFilter.count(model->getClassName()) > 0;
}

void iBaseView::setViewModel(iBaseModel* model)
{
    if (!canSetModel(model) || model == m_model)
        return;
    if (m_model)
        forEachModelSignal(m_model, [this](auto& signal, auto) { signal.disconnect(this); });
    m_model = model;
    // Through the virtual slots, so that a derived view's overrides hear.
    forEachModelSignal(m_model, [this](auto& signal, auto slot) { signal.connect(this, slot); });
}

void iBaseView::slotModelDestroyed(iRoot*)
{
    m_model = nullptr;
}

void iBaseView::setFilterByClasses(std::set<std::string> const& classes)
{
    m_classFilter = classes;
    processFilters(m_selectWhenFiltering);
}

void iBaseView::setFilterByProperties(std::set<std::string> const& properties)
{
    m_propertyFilter = properties;
    processFilters(m_selectWhenFiltering);
}

void iBaseView::setFilterByName(std::string const& name)
{
    m_nameFilter = name;
    processFilters(m_selectWhenFiltering);
}

QPixmap iBaseView::getObjectPixmap(osg::Node*)
{
    return QPixmap();
}

void iBaseView::processFilters(bool)
{
}
