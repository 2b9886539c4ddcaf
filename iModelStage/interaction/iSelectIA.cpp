#include <iModelStage/interaction/iSelectIA.h>

#include <iModelStage/frame/iClassIcons.h>
#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/interaction/iActionHoveredHandler.h>
#include <iModelStage/interaction/iInteractorManager.h>
#include <iModelStage/interaction/iSelectWindowIA.h>
#include <iModelStage/viewing/iViewer.h>

#include <QAction>
#include <QCursor>
#include <QIcon>
#include <QMenu>
#include <QPointer>

#include <vector>

I_REGISTER_CLASS(iSelectIA)

namespace {

constexpr unsigned int kSelectable = 1;

template <class T>
T* pointerProperty(QAction* action, char const* name)
{
    return reinterpret_cast<T*>(static_cast<quintptr>(action->property(name).toLongLong()));
}

bool wasUnselected(QAction* action)
{
    QVariant const selected = action->property("_selected");
    return selected.isValid() && selected.toLongLong() == 0;
}

} // namespace

iSelectIA::iSelectIA() : _hoverHandler(new iActionHoveredHandler(this))
{
    setNumSteps(1);
    setAcceptSnap(false);
    setAllowConstructionLines(false);
    addStep(QString::fromUtf8(iTranslate("Cliccare col pulsante sinistro del mouse per selezionare un oggetto")),
            iIATypeVec3, osg::Vec3f());
}

iSelectIA::~iSelectIA() = default;

void iSelectIA::start()
{
    iInteractor::start();
    _pickedCount = 0;
}

bool iSelectIA::click(iIAPoint const& p)
{
    iInteractor::click(p);
    _clickPosition = p;
    unsigned int const modifiers = getKeyModifiers();
    // Shift with Alt leaves the selection alone, so a drag can still band.
    if (modifiers == 6 || modifiers == 7)
        return true;
    selectSingle(p);
    return true;
}

bool iSelectIA::move(iIAPoint const& p)
{
    iInteractor::move(p);
    if (!getDragging() || _pickedCount != 0)
        return true;
    iInteractorManager* manager = iInteractorManager::getInteractorManager();
    if (!manager || !getGeometricsLayer())
        return true;
    // With a layer at hand, a refused push has deleted the tool itself.
    auto* band = new iSelectWindowIA;
    if (!manager->pushInteractor(band, true))
        return true;
    band->setGeometricsLayer(getGeometricsLayer());
    band->lockGeometricLayer(isGeometryLayerLocked());
    band->setViewer(getViewer());
    band->setKeyModifiers(getKeyModifiers());
    band->start();
    band->click(_clickPosition);
    reset();
    return true;
}

bool iSelectIA::release(iIAPoint const& p)
{
    iInteractor::release(p);
    iGeometricsLayer* layer = getGeometricsLayer();
    if (layer && _pickedCount == 0 && !isCtrlHeld())
        layer->clearObjectSelection();
    return true;
}

void iSelectIA::selectSingle(iIAPoint const& p)
{
    iGeometricsLayer* layer = getGeometricsLayer();
    iViewer* viewer = getViewer();
    if (!layer || !viewer)
        return;
    osg::Vec3f const& at = p.getWindowPos();
    osgUtil::PolytopeIntersector::Intersections hits;
    iPolytopeHits(layer, viewer, at.x() - 5.0, at.y() - 5.0, at.x() + 5.0, at.y() + 5.0, hits);

    _pickedCount = 0;
    _menuActions.clear();
    _candidates.clear();
    bool const ctrl = isCtrlHeld();
    if (hits.empty())
        return;

    Pair pair;
    collectCandidates(hits, pair);
    bool menuUsed = false;
    if (_candidates.size() < 2) {
        if (!pair.parent)
            pair = firstSelectable(hits);
    } else {
        menuUsed = chooseFromMenu(pair);
        // A dismissed menu picks nothing.
        if (!menuUsed)
            pair = Pair();
    }
    _menuActions.clear();
    _candidates.clear();
    if (pair.parent && pair.node)
        applyPick(pair, ctrl);
    if (menuUsed)
        postRelease(p);
    viewer->makeGLCurrent();
}

void iSelectIA::collectCandidates(osgUtil::PolytopeIntersector::Intersections const& hits, Pair& fallback)
{
    iGeometricsLayer* layer = getGeometricsLayer();
    iViewer* viewer = getViewer();
    for (auto const& found : iSelectablePairs(hits, layer, viewer)) {
        Pair const pair{found.first, found.second};
        if (_candidates.contains(pair.parent))
            continue;
        bool accepted = true;
        bool const selectable = layer->isNodeFlagSet(pair.parent, kSelectable);
        if (selectable) {
            if (!layer->isObjectFiltered(pair.parent))
                accepted = false;
            else
                fallback = pair;
        }
        if (!layer->isObjectSelected(pair.parent) && selectable && accepted)
            _candidates[pair.parent] = pair.node;
    }
}

iSelectIA::Pair iSelectIA::firstSelectable(osgUtil::PolytopeIntersector::Intersections const& hits)
{
    iGeometricsLayer* layer = getGeometricsLayer();
    iViewer* viewer = getViewer();
    for (auto const& found : iSelectablePairs(hits, layer, viewer)) {
        Pair const pair{found.first, found.second};
        if (layer->isNodeFlagSet(pair.parent, kSelectable) && layer->isObjectFiltered(pair.parent))
            return pair;
    }
    return Pair();
}

bool iSelectIA::chooseFromMenu(Pair& pair)
{
    iGeometricsLayer* layer = getGeometricsLayer();
    // The candidates stay alive while the nested loop runs, whatever the
    // application removes meanwhile.
    std::vector<osg::ref_ptr<osg::Node>> keep;
    QMenu menu(QString::fromUtf8(iTranslate("Selezione")));
    menu.setWindowOpacity(120.0);
    QObject::connect(&menu, SIGNAL(hovered(QAction*)), _hoverHandler.get(), SLOT(actionHovered(QAction*)));
    for (auto it = _candidates.constBegin(); it != _candidates.constEnd(); ++it) {
        keep.emplace_back(it.key());
        keep.emplace_back(it.value());
        QAction* action = menu.addAction(QIcon(iGetClassIcon(QString::fromUtf8(it.key()->className()))),
                                         QString::fromStdString(it.key()->getName()));
        action->setProperty("_parent", static_cast<qlonglong>(reinterpret_cast<quintptr>(it.key())));
        action->setProperty("_node", static_cast<qlonglong>(reinterpret_cast<quintptr>(it.value())));
        action->setProperty("_selected", static_cast<qlonglong>(layer->isObjectSelected(it.key()) ? 1 : 0));
        _menuActions.append(action);
    }

    unsigned int const modifiers = getKeyModifiers();
    // An entry triggered by other means than the menu's own click counts too.
    QAction* triggered = nullptr;
    QObject::connect(&menu, &QMenu::triggered, [&triggered](QAction* action) { triggered = action; });
    QAction* chosen = menu.exec(QCursor::pos());
    if (!chosen)
        chosen = triggered;
    setKeyModifiers(modifiers);
    if (chosen) {
        pair.parent = pointerProperty<osg::Group>(chosen, "_parent");
        pair.node = pointerProperty<osg::Node>(chosen, "_node");
    }
    takeBackPreviews();
    QObject::disconnect(&menu, nullptr, _hoverHandler.get(), nullptr);
    // An object taken out of the document while the menu was open is no
    // pick any more.
    if (chosen && !layer->isRelative(pair.parent))
        return false;
    return chosen != nullptr;
}

void iSelectIA::takeBackPreviews()
{
    iGeometricsLayer* layer = getGeometricsLayer();
    if (!layer)
        return;
    for (QAction* action : _menuActions)
        if (wasUnselected(action))
            layer->removeObjectSelection(pointerProperty<osg::Node>(action, "_parent"));
}

void iSelectIA::applyPick(Pair const& pair, bool ctrl)
{
    iGeometricsLayer* layer = getGeometricsLayer();
    ++_pickedCount;
    if (!ctrl)
        layer->clearObjectSelection();
    if (!layer->isNodeFlagSet(pair.parent, kSelectable)) {
        --_pickedCount;
        return;
    }
    bool const selected = layer->isObjectSelected(pair.parent);
    if (!selected)
        layer->addObjectSelection(pair.parent);
    else if (ctrl)
        layer->removeObjectSelection(pair.parent);
}

void iSelectIA::postRelease(iIAPoint const& p)
{
    // The menu took the press's release for itself.
    if (iViewer* viewer = getViewer())
        viewer->getEventQueue()->mouseButtonRelease(p.getGlobalPos().x(), p.getGlobalPos().y(), 1);
}
