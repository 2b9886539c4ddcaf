#pragma once

#include <iModelStage/frame/iSlot.h>

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class iGeometricsLayer;
class iLayersManager;

// The workbench's document: the library's layers manager with the layers of
// this application, and every file operation a user can start, each
// answering with a sentence for the user on failure (empty on success). No
// failure loses the document on screen: a file is checked before it may
// replace the document, and should the library destroy the layers while
// loading all the same, the document is put back as it was.
class wbDocument : public iSlot {
public:
    wbDocument();
    ~wbDocument() override;
    wbDocument(wbDocument const&) = delete;
    wbDocument& operator=(wbDocument const&) = delete;

    iLayersManager* manager() const { return m_manager.get(); }
    // The layer the user draws in; null only while layers are being rebuilt.
    static iGeometricsLayer* geometrics();

    void newDocument();
    QString open(QString const& path);
    QString save();
    QString saveAs(QString const& path);
    // Objects of other documents into this one, as one undo step.
    QString merge(QStringList const& paths);
    // A model file (anything the scene library reads) as a file reference.
    QString importModel(QString const& path);
    // The drawing as a model file of the type its extension names.
    QString exportModel(QString const& path);

    QString fileName() const;
    bool isModified() const;

    // Objects that show an external file which could not be read.
    QStringList missingReferences() const;

    // Called after the layers were destroyed and made again, so that views
    // bind to the new ones; set by the window.
    void setLayersRebuiltHandler(std::function<void()> handler) { m_layersRebuilt = std::move(handler); }

private:
    static void registerLayers();
    bool layersAlive() const;
    void restore(std::string const& snapshot, std::string const& fileName, bool modified);

    std::unique_ptr<iLayersManager> m_manager;
    std::function<void()> m_layersRebuilt;
};
