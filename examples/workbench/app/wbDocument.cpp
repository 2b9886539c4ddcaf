#include "app/wbDocument.h"

#include "app/wbDocumentFile.h"

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iMemoryBuffer.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/geometry/iFileReferenceGroup.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/geometry/iImportExportManager.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iUndoRedoManager.h>
#include <iModelStage/reporting/iDBScanner.h>
#include <iModelStage/reporting/iDBScannerHandler.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <exception>

namespace {

char const* const geometricsName = "iGeometricsLayer";
char const* const layerClasses[][2] = {
    {"iGeometricsLayer", "iGeometricsLayer"},
    {"iImagesLayer", "iImagesLayer"},
    {"iMaterialsLayer", "iMaterialsLayer"},
};

QString tr(char const* text)
{
    return QCoreApplication::translate("wbDocument", text);
}

std::string localPath(QString const& path)
{
    return QFile::encodeName(path).toStdString();
}

std::string snapshotOf(iLayersManager* manager)
{
    iLayersManager::QuietProgress quiet(manager);
    iMemoryBuffer buffer;
    iOutStream out(&buffer);
    manager->saveToStream(out);
    return buffer.str();
}

} // namespace

wbDocument::wbDocument()
    : m_manager(std::make_unique<iLayersManager>())
{
    registerLayers();
}

wbDocument::~wbDocument()
{
    m_manager->freeLayerObjects();
}

void wbDocument::registerLayers()
{
    for (auto const& row : layerClasses)
        iLayersManager::registerNodeLayerClass(row[0], row[1]);
    iLayersManager::setCurrentLayer(geometricsName);
}

iGeometricsLayer* wbDocument::geometrics()
{
    return dynamic_cast<iGeometricsLayer*>(iLayersManager::getLayer(geometricsName));
}

bool wbDocument::layersAlive() const
{
    for (auto const& row : layerClasses)
        if (!iLayersManager::getLayer(row[1]))
            return false;
    return true;
}

void wbDocument::newDocument()
{
    m_manager->getUndoRedoManager()->flush();
    m_manager->emptyAllLayers();
}

QString wbDocument::open(QString const& path)
{
    wbDocumentFile::Problem const problem = wbDocumentFile::check(path);
    if (problem != wbDocumentFile::Fine)
        return wbDocumentFile::describe(problem, path);

    std::string const snapshot = snapshotOf(m_manager.get());
    std::string const previousName = m_manager->getCurrentFileName();
    bool const previousModified = m_manager->dbChanged();
    bool failed = false;
    try {
        m_manager->load(localPath(path));
    } catch (char const*) {
        failed = true;
    }
    if (!failed && layersAlive())
        return QString();
    restore(snapshot, previousName, previousModified);
    return wbDocumentFile::describe(wbDocumentFile::Damaged, path);
}

void wbDocument::restore(std::string const& snapshot, std::string const& fileName, bool modified)
{
    bool const rebuilt = !layersAlive();
    if (rebuilt) {
        m_manager->freeLayerObjects();
        registerLayers();
    }
    m_manager->emptyAllLayers();
    {
        iLayersManager::QuietProgress quiet(m_manager.get());
        iMemoryBuffer buffer(snapshot);
        iInStream in(&buffer);
        m_manager->loadFromStream(in);
    }
    m_manager->setCurrentFileName(fileName);
    m_manager->sigFileNameChanged(fileName);
    // The flush of the failed load took the undo steps; one step marks the
    // restored document as still unsaved.
    if (modified)
        m_manager->storeForUndo(tr("Restore").toStdString());
    if (rebuilt && m_layersRebuilt)
        m_layersRebuilt();
}

QString wbDocument::save()
{
    if (m_manager->getCurrentFileName().empty())
        return tr("The document has no file name yet: use Save As.");
    return saveAs(QString::fromStdString(m_manager->getCurrentFileName()));
}

QString wbDocument::saveAs(QString const& path)
{
    if (path.isEmpty())
        return tr("No file name was given.");
    m_manager->saveAs(localPath(path));
    std::string const& error = m_manager->getLastSaveError();
    if (error.empty())
        return QString();
    return tr("The document could not be saved as \"%1\" (%2). It is still open; choose another place.")
        .arg(path, QString::fromStdString(error));
}

QString wbDocument::merge(QStringList const& paths)
{
    iDBScannerHandler handler;
    iDBScanner scanner(&handler);
    for (QString const& path : paths) {
        wbDocumentFile::Problem const problem = wbDocumentFile::check(path);
        if (problem != wbDocumentFile::Fine)
            return wbDocumentFile::describe(problem, path);
        scanner.addFilePath(localPath(path));
    }
    osg::ref_ptr<iNodeLayer> found = new iNodeLayer;
    try {
        scanner.collectObjects(found.get());
    } catch (char const*) {
        return tr("The files could not be merged: one of them is damaged.");
    } catch (std::exception const&) {
        return tr("The files could not be merged: one of them is damaged.");
    }
    NodeList objects;
    osg::Group* root = found->getObjectsRoot();
    for (unsigned int i = 0; i < root->getNumChildren(); ++i)
        objects.push_back(root->getChild(i));
    if (objects.empty())
        return tr("The files hold nothing to merge.");
    scanner.addObjectsToDB(objects);
    return QString();
}

QString wbDocument::importModel(QString const& path)
{
    iGeometricsLayer* layer = geometrics();
    if (!layer)
        return tr("There is no drawing to import into.");
    if (!QFileInfo(path).isFile())
        return tr("The file \"%1\" does not exist.").arg(path);
    osg::ref_ptr<iFileReferenceGroup> reference = new iFileReferenceGroup;
    reference->set_name(QFileInfo(path).completeBaseName().toStdString());
    m_manager->storeForUndo(tr("Import").toStdString());
    layer->addObject(reference.get(), true);
    reference->set_filename(localPath(QFileInfo(path).absoluteFilePath()));
    if (reference->isValid())
        return QString();
    layer->removeObject(reference.get(), true);
    m_manager->cancelUndoStore();
    return tr("\"%1\" could not be read as a model: its type is unknown or the file is damaged.")
        .arg(QFileInfo(path).fileName());
}

QString wbDocument::exportModel(QString const& path)
{
    iGeometricsLayer* layer = geometrics();
    if (!layer)
        return tr("There is no drawing to export.");
    if (iImportExportManager::exportToFile(layer->getObjectsRoot(), localPath(path)))
        return QString();
    return tr("The drawing could not be exported to \"%1\": the type is not supported or the place is not "
              "writable.")
        .arg(path);
}

QString wbDocument::fileName() const
{
    return QString::fromStdString(m_manager->getCurrentFileName());
}

bool wbDocument::isModified() const
{
    return m_manager->dbChanged();
}

QStringList wbDocument::missingReferences() const
{
    QStringList missing;
    iGeometricsLayer* layer = geometrics();
    if (!layer)
        return missing;
    NodeList objects;
    std::set<std::string> classes{"iFileReferenceGroup"};
    layer->getObjectsList(layer->getObjectsRoot(), objects, &classes);
    for (osg::ref_ptr<osg::Node> const& node : objects) {
        auto* reference = dynamic_cast<iFileReferenceGroup*>(node.get());
        if (reference && !reference->isValid())
            missing << QString::fromStdString(reference->get_filename());
    }
    return missing;
}
