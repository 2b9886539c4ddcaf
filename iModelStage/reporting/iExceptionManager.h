#ifndef IMODELSTAGE_REPORTING_IEXCEPTIONMANAGER_H
#define IMODELSTAGE_REPORTING_IEXCEPTIONMANAGER_H

#include <iModelStage/frame/iObjectMacros.h>

#include <set>
#include <string>

class iExceptionManagerInterface;
class iLayersManager;

// Runs the document checks that the application registered, by key, and
// hands each check's block to the exception interface of the document. A
// second set of checks runs only when the first found no error.
//
// The findings are process-wide: one manager's start clears what another
// found.
class IMODELSTAGE_EXPORT iExceptionManager : public iRoot {
    I_CLASS(iExceptionManager, iRoot, 1)
public:
    // A null manager means the document instance.
    explicit iExceptionManager(iLayersManager* manager = nullptr);
    ~iExceptionManager() override;

    sigslot::signal0<> sigStarted;
    sigslot::signal0<> sigEnded;
    // Not emitted by the library; for hosts that cancel a run.
    sigslot::signal0<> sigCanceled;

    // False when the class is registered under the key already.
    static bool registerExceptionHandler(std::string const& key, char const* className);
    static bool registerPostExceptionHandler(std::string const& key, char const* className);

    // mode 0 only clears; any other value runs the checks, and with the bit
    // of value 2 the post-checks too when no check found an error. A
    // non-empty classes set limits the run to those classes.
    void start(std::string const& title, iRoot* data, unsigned int mode, std::set<std::string> const& classes);
    void clear();

protected:
    void end();

private:
    iExceptionManagerInterface* interface() const;

    iLayersManager* m_manager;
};

#endif
