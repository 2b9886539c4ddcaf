#ifndef IMODELSTAGE_INTERACTION_IACTIONHOVEREDHANDLER_H
#define IMODELSTAGE_INTERACTION_IACTIONHOVEREDHANDLER_H

#include <iModelStage/frame/iExport.h>

#include <QObject>

class QAction;
class iSelectIA;

// Lights up the object of the pick menu's hovered entry while the menu is
// open, without telling the application.
class IMODELSTAGE_EXPORT iActionHoveredHandler : public QObject {
    Q_OBJECT
public:
    explicit iActionHoveredHandler(iSelectIA* owner) : _owner(owner) {}

public slots:
    void actionHovered(QAction* action);

private:
    iSelectIA* _owner;
};

#endif
