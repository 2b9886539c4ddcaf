#ifndef IMODELSTAGE_EDITING_IMANIPULATORSMANAGER_H
#define IMODELSTAGE_EDITING_IMANIPULATORSMANAGER_H

#include <iModelStage/frame/iObjectMacros.h>
#include <iModelStage/model/NodeList.h>

#include <osg/observer_ptr>
#include <osg/ref_ptr>

#include <map>
#include <string>
#include <utility>

class iBaseManipulator;
class iGeometricsLayer;

// Chooses the gizmo for the selection of its layer: the one registered
// for the class of the selected objects, else the default. A selection
// of more than one class gets none.
class IMODELSTAGE_EXPORT iManipulatorsManager : public iRoot {
    I_CLASS(iManipulatorsManager, iRoot, 1)
public:
    iManipulatorsManager();
    ~iManipulatorsManager() override;
    iManipulatorsManager(iManipulatorsManager const&) = delete;
    iManipulatorsManager& operator=(iManipulatorsManager const&) = delete;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    // Created on first use.
    static iManipulatorsManager* getInstance();

    // True for a new pair; a known pair takes the new class and answers
    // false. Both classes must be known.
    static bool registerObjectManipulator(char const* objectClass, char const* manipulatorClass, char const* key);
    static void setDefaultObjectManipulator(char const* manipulatorClass);

    iBaseManipulator* getCurrentManipulator();
    iGeometricsLayer* getGeometricsLayer() { return _layer.get(); }
    void setGeometricsLayer(iGeometricsLayer* layer);
    void updateCurrentManipulator() { slotLayerSelectionChanged(); }

    void slotLayerSelectionChanged();

protected:
    iBaseManipulator* getManipulator(char const* objectClass, char const* key);

private:
    void removeCurrentManipulator();

    osg::observer_ptr<iGeometricsLayer> _layer;
    osg::ref_ptr<iBaseManipulator> _current;
    NodeList _targets;

    static iManipulatorsManager* s_instance;
    static std::map<std::pair<std::string, std::string>, std::string>& registry();
    static std::string& defaultClass();
};

#endif
