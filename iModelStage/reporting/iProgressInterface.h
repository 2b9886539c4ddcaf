#ifndef IMODELSTAGE_REPORTING_IPROGRESSINTERFACE_H
#define IMODELSTAGE_REPORTING_IPROGRESSINTERFACE_H

#include <iModelStage/frame/iExport.h>

#include <QString>

// A sink for the progress of long operations, implemented by the
// application (a dialog, a status bar). Every default does nothing.
class IMODELSTAGE_EXPORT iProgressInterface {
public:
    virtual ~iProgressInterface() = default;

    virtual void setRange(int min, int max);
    virtual void setInfoText(QString const& text);
    virtual void begin();
    virtual void setValue(int value);
    virtual void end();
    // How many values the sink may let pass between repaints.
    virtual void setRefreshInterval(int interval);
    // The user asked to stop.
    virtual bool canceled();
    // A progress is running.
    virtual bool progressing();
};

#endif
