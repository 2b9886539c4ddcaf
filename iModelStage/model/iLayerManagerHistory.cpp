#include <iModelStage/model/iLayerManagerHistory.h>

#include <iModelStage/model/iBaseModel.h>
#include <iModelStage/model/iLayersManager.h>

I_DEFINE_CLASS(iLayerManagerHistory)

iLayerManagerHistory::iLayerManagerHistory(iLayersManager* manager) : _manager(manager)
{
    if (manager)
        manager->sigCurrentLayerChanged.connect(this, &iLayerManagerHistory::slotCurrentLayerChanged);
}

void iLayerManagerHistory::slotCurrentLayerChanged(iBaseModel* layer)
{
    if (!layer)
        return;
    std::string const& name = layer->getModelId();
    if (_index != -1 && _names[static_cast<std::size_t>(_index)] == name)
        return;
    if (_index != -1)
        _names.resize(static_cast<std::size_t>(_index) + 1);
    _names.push_back(name);
    if (static_cast<int>(_names.size()) > maxSize)
        _names.erase(_names.begin());
    _index = static_cast<int>(_names.size()) - 1;
    sigHistoryChanged();
}

bool iLayerManagerHistory::canGoNext() const
{
    return !_names.empty() && _index >= 0 && _index < static_cast<int>(_names.size()) - 1;
}

bool iLayerManagerHistory::canGoPrev() const
{
    return _index >= 1;
}

bool iLayerManagerHistory::moveTo(int index)
{
    _index = index;
    iLayersManager::setCurrentLayer(_names[static_cast<std::size_t>(index)]);
    sigHistoryChanged();
    return true;
}

bool iLayerManagerHistory::goNext()
{
    return canGoNext() && moveTo(_index + 1);
}

bool iLayerManagerHistory::goPrev()
{
    return canGoPrev() && moveTo(_index - 1);
}

bool iLayerManagerHistory::goTo(int index)
{
    if (_index == -1 || index < 0 || index >= static_cast<int>(_names.size()))
        return false;
    return moveTo(index);
}

void iLayerManagerHistory::clear()
{
    _names.clear();
    _index = -1;
    sigHistoryChanged();
}

std::list<std::string> iLayerManagerHistory::getPrevClasses() const
{
    std::list<std::string> names;
    for (int i = 0; i < _index; ++i)
        names.push_back(_names[static_cast<std::size_t>(i)]);
    return names;
}

std::list<std::string> iLayerManagerHistory::getNextClasses() const
{
    std::list<std::string> names;
    for (int i = _index + 1; i < static_cast<int>(_names.size()); ++i)
        names.push_back(_names[static_cast<std::size_t>(i)]);
    return names;
}
