#ifndef IMODELSTAGE_MODEL_ILOADSCOPE_H
#define IMODELSTAGE_MODEL_ILOADSCOPE_H

#include <iModelStage/frame/iExport.h>
#include <iModelStage/model/iParentLinks.h>

#include <map>

class iBaseModel;

// One load of a document. While a scope lives, all reads into one layer
// share that layer's path budget and what is known of its objects, so that
// a file that names a layer in many entries is held to the same bound as
// one that names it once. A read outside any scope opens its own. Scopes
// nest: the outermost one counts.
class IMODELSTAGE_EXPORT iLoadScope {
public:
    struct Layer {
        iParentLinks::Budget budget;
        iParentLinks::Anchors known;
    };

    iLoadScope();
    ~iLoadScope();
    iLoadScope(iLoadScope const&) = delete;
    iLoadScope& operator=(iLoadScope const&) = delete;

    // The state of model in the outermost scope; call it only while a scope
    // lives.
    static Layer& layer(iBaseModel const* model);

private:
    std::map<iBaseModel const*, Layer> m_layers;
    bool m_outermost;
};

#endif
