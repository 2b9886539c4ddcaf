#ifndef IMODELSTAGE_INTERACTION_IINTERACTORINPUTHANDLER_H
#define IMODELSTAGE_INTERACTION_IINTERACTORINPUTHANDLER_H

#include <iModelStage/frame/iObjectMacros.h>

#include <string>

// The application's hook for typed input. Its subclass owns an input line;
// on Return it hands the text to dataAccepted, which turns it into the
// move, click and release that a mouse would give the current tool.
class IMODELSTAGE_EXPORT iInteractorInputHandler : public iRoot {
    I_CLASS(iInteractorInputHandler, iRoot, 1)
public:
    iInteractorInputHandler();
    ~iInteractorInputHandler() override;

    // True while the user types in the input line.
    bool isBusy() const { return _busy; }
    void setBusy(bool busy) { _busy = busy; }

protected:
    friend class iInteractorManager;

    // Fills the input line; the manager clears it with "" after each
    // release and on cancel and close.
    virtual void setDefaultData(std::string const& text);
    // Numbers separated by blanks, as many as the current step takes; "@"
    // makes them relative to the last point given.
    void dataAccepted(std::string const& text);

private:
    bool _busy = false;
};

#endif
