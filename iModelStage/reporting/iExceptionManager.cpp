#include <iModelStage/reporting/iExceptionManager.h>

#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/reporting/iExceptionBlock.h>
#include <iModelStage/reporting/iExceptionManagerInterface.h>

#include <algorithm>
#include <map>
#include <vector>

I_REGISTER_CLASS(iExceptionManager)

namespace {

typedef std::map<std::string, std::vector<std::string>> Handlers;

void destroy(std::vector<iExceptionBlock*>& blocks);

struct Registry {
    ~Registry()
    {
        destroy(blocks);
        destroy(postBlocks);
    }
    Handlers handlers;
    Handlers postHandlers;
    std::vector<iExceptionBlock*> blocks;
    std::vector<iExceptionBlock*> postBlocks;
};

Registry& registry()
{
    static Registry instance;
    return instance;
}

bool addHandler(Handlers& handlers, std::string const& key, char const* className)
{
    std::vector<std::string>& classes = handlers[key];
    std::string const name = className ? className : "";
    if (std::find(classes.begin(), classes.end(), name) != classes.end())
        return false;
    classes.push_back(name);
    return true;
}

void destroy(std::vector<iExceptionBlock*>& blocks)
{
    for (iExceptionBlock* block : blocks)
        delete block;
    blocks.clear();
}

} // namespace

iExceptionManager::iExceptionManager(iLayersManager* manager) : m_manager(manager)
{
}

iExceptionManager::~iExceptionManager() = default;

bool iExceptionManager::registerExceptionHandler(std::string const& key, char const* className)
{
    return addHandler(registry().handlers, key, className);
}

bool iExceptionManager::registerPostExceptionHandler(std::string const& key, char const* className)
{
    return addHandler(registry().postHandlers, key, className);
}

iExceptionManagerInterface* iExceptionManager::interface() const
{
    // Asked at every call: the document may change its interface.
    iLayersManager* manager = m_manager ? m_manager : iLayersManager::getInstance();
    if (manager)
        return manager->getExceptionManagerInterface();
    static iExceptionManagerInterface fallback;
    return &fallback;
}

void iExceptionManager::start(std::string const& title, iRoot* data, unsigned int mode,
                              std::set<std::string> const& classes)
{
    clear();
    if (mode == 0)
        return;
    interface()->start(title);
    sigStarted();

    // Each registered check, in key order; the error count decides whether
    // the post-checks run.
    auto run = [&](Handlers const& handlers, std::vector<iExceptionBlock*>& kept) {
        int errors = 0;
        for (auto const& entry : handlers) {
            for (std::string const& className : entry.second) {
                if (!classes.empty() && classes.count(className) == 0)
                    continue;
                iRoot* created = iRoot::newClass(className.c_str());
                iExceptionBlock* block = dynamic_cast<iExceptionBlock*>(created);
                if (!block) {
                    delete created;
                    continue;
                }
                interface()->handleBlock(block);
                block->setDataObject(data);
                block->handleExceptions();
                errors += block->getNumErrors();
                kept.push_back(block);
            }
        }
        return errors;
    };
    Registry& r = registry();
    int const errors = run(r.handlers, r.blocks);
    if ((mode & 2) != 0 && errors == 0)
        run(r.postHandlers, r.postBlocks);
    end();
}

void iExceptionManager::end()
{
    sigEnded();
    interface()->end();
}

void iExceptionManager::clear()
{
    interface()->clear();
    destroy(registry().blocks);
    destroy(registry().postBlocks);
}
