#ifndef IMODELSTAGE_VIEWING_IVIEWERMANAGER_H
#define IMODELSTAGE_VIEWING_IVIEWERMANAGER_H

#include <iModelStage/frame/iObjectMacros.h>

#include <QList>
#include <QObject>
#include <QTimer>

#include <osg/Vec4f>

class iViewer;

// The registry of all viewers: it repaints the visible ones when the host
// asks, resets them, and carries the background setting to every viewer.
// The one instance comes with the first viewer's init; viewers leave its
// list when they are destroyed.
class IMODELSTAGE_EXPORT iViewerManager : public QObject, public iRoot {
    Q_OBJECT
    I_CLASS(iViewerManager, iRoot, 1)
public:
    explicit iViewerManager(QObject* parent = nullptr);
    ~iViewerManager() override;

    // Null before the first viewer's init.
    static iViewerManager* getInstance();
    QList<iViewer*> const& getViewers() const { return m_viewers; }
    // Whether a visible viewer shows an enabled renderer mask that shares a
    // bit with mask; false without viewers.
    static bool isMaskEnabled(int mask);
    // The background colour setting, or its default when it is missing or
    // not a colour.
    static osg::Vec4f readBackgroundColor();

    void read(iInStream&, int) { }
    void write(iOutStream&) { }

public slots:
    void paintViewers();
    void resetAll();
    void applySettingsChanges();

protected:
    friend class iViewer;
    void addViewer(iViewer* viewer);
    void slotViewerDestroyed(iRoot* root);

private:
    QList<iViewer*> m_viewers;
    // The unique id of each viewer, kept at registration: a viewer that
    // is being destroyed is no longer a viewer to ask.
    QList<long> m_viewerIds;
    QTimer m_timer;
};

#endif
