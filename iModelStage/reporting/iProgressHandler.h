#ifndef IMODELSTAGE_REPORTING_IPROGRESSHANDLER_H
#define IMODELSTAGE_REPORTING_IPROGRESSHANDLER_H

#include <iModelStage/frame/iExport.h>

#include <string>

class iLayersManager;
class iProgressInterface;

// What a long operation creates on the stack to report progress. Each call
// asks the manager for its sink at that moment, so a sink swapped or
// progress switched off during the operation takes effect at once. Ends
// the sink when it goes out of scope.
class IMODELSTAGE_EXPORT iProgressHandler {
public:
    // Null takes the manager singleton; without any manager the sink is
    // the do-nothing default.
    explicit iProgressHandler(iLayersManager* manager = nullptr);
    ~iProgressHandler();
    iProgressHandler(iProgressHandler const&) = default;
    iProgressHandler& operator=(iProgressHandler const&) = default;

    void setRange(int min, int max);
    void setInfoText(std::string const& text);
    void begin();
    void setValue(int value);
    void end();
    void setRefreshInterval(int interval);
    bool canceled();
    bool progressing();

    // The cube of the natural logarithm of count, cut to an integer; 0 for
    // counts below 1.
    static int calcOptimalRefreshInterval(int count);

private:
    iProgressInterface* sink() const;

    iLayersManager* _manager;
};

#endif
