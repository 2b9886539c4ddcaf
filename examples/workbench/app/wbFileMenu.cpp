#include "app/wbFileMenu.h"

#include "app/wbApplication.h"
#include "app/wbDocument.h"
#include "app/wbMainWindow.h"

#include <iModelStage/frame/iValueTypes.h>
#include <iModelStage/geometry/iImportExportManager.h>
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/model/iSettingsManagerBase.h>
#include <iModelStage/viewing/iViewerManager.h>

#include <QAction>
#include <QColorDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>

namespace {

char const* const documentFilter = "Workbench documents (*.ims);;All files (*)";
char const* const backgroundSetting = "iModelStage_viewerbg";

QString modelFilter()
{
    QStringList patterns;
    for (std::string const& extension : iImportExportManager::getHandledFileExtensions())
        patterns << "*." + QString::fromStdString(extension);
    if (patterns.isEmpty())
        patterns << "*.osgb" << "*.obj" << "*.stl";
    return QString("Models (%1);;All files (*)").arg(patterns.join(' '));
}

} // namespace

wbFileMenu::wbFileMenu(wbMainWindow* window)
    : QObject(window), m_window(window), m_document(window->document())
{
    m_discard = [this] {
        return QMessageBox::question(m_window, tr("Unsaved changes"),
                                     tr("The document has changes that are not saved. Drop them?"),
                                     QMessageBox::Discard | QMessageBox::Cancel) == QMessageBox::Discard;
    };
    QMenu* menu = window->menuBar()->addMenu(tr("&File"));
    add(menu, "new", tr("&New"), QKeySequence::New, [this] { newDocument(); });
    add(menu, "open", tr("&Open..."), QKeySequence::Open, [this] { askOpen(); });
    add(menu, "openSample", tr("Open &sample"), QKeySequence(), [this] { openSample(); });
    m_recent = menu->addMenu(tr("Open &recent"));
    m_recent->setObjectName("file.recent");
    connect(m_recent, &QMenu::aboutToShow, this, &wbFileMenu::fillRecent);
    menu->addSeparator();
    add(menu, "save", tr("&Save"), QKeySequence::Save, [this] { save(); });
    add(menu, "saveAs", tr("Save &as..."), QKeySequence::SaveAs, [this] { askSaveAs(); });
    menu->addSeparator();
    add(menu, "import", tr("&Import model..."), QKeySequence(), [this] { askImport(); });
    add(menu, "merge", tr("&Merge documents..."), QKeySequence(), [this] { askMerge(); });
    add(menu, "export", tr("&Export drawing..."), QKeySequence(), [this] { askExport(); });
    menu->addSeparator();
    add(menu, "background", tr("&Background colour..."), QKeySequence(), [this] { askBackground(); });
    menu->addSeparator();
    add(menu, "quit", tr("&Quit"), QKeySequence::Quit, [this] { m_window->close(); });
}

QAction* wbFileMenu::add(QMenu* menu, char const* name, QString const& text, QKeySequence const& key,
                         std::function<void()> work)
{
    QAction* action = menu->addAction(text);
    action->setObjectName(QString("file.") + name);
    action->setShortcut(key);
    connect(action, &QAction::triggered, this, std::move(work));
    m_window->addAction(action);
    return action;
}

bool wbFileMenu::report(QString const& error, QString const& done)
{
    if (error.isEmpty()) {
        if (!done.isEmpty())
            emit message(done);
        return true;
    }
    // Window-modal and not waited for: the user reads it over the window.
    auto* box = new QMessageBox(QMessageBox::Warning, tr("Workbench"), error, QMessageBox::Ok, m_window);
    box->setObjectName("errorBox");
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
    emit message(error);
    return false;
}

bool wbFileMenu::mayDiscard()
{
    return !m_document->isModified() || m_discard();
}

bool wbFileMenu::newDocument()
{
    if (!mayDiscard())
        return false;
    m_document->newDocument();
    return report(QString(), tr("New document."));
}

bool wbFileMenu::openFile(QString const& path)
{
    if (!mayDiscard())
        return false;
    QString error;
    {
        wbMainWindow::Pause pause(m_window);
        error = m_document->open(path);
    }
    if (!error.isEmpty())
        return report(error, QString());
    wbApplication::addRecentFile(path);
    m_window->zoomAll();
    QStringList const missing = m_document->missingReferences();
    if (!missing.isEmpty())
        return report(tr("The document was opened, but these referenced files are missing and are not shown:\n%1")
                          .arg(missing.join('\n')),
                      QString());
    return report(QString(), tr("Opened %1.").arg(QFileInfo(path).fileName()));
}

QString wbFileMenu::samplePath()
{
    return QString(WORKBENCH_SAMPLES_DIR) + "/sample.ims";
}

bool wbFileMenu::openSample()
{
    return openFile(samplePath());
}

bool wbFileMenu::save()
{
    if (m_document->fileName().isEmpty()) {
        askSaveAs();
        return !m_document->isModified();
    }
    wbMainWindow::Pause pause(m_window);
    return report(m_document->save(), tr("Saved."));
}

bool wbFileMenu::saveAs(QString const& path)
{
    QString error;
    {
        wbMainWindow::Pause pause(m_window);
        error = m_document->saveAs(path);
    }
    if (error.isEmpty())
        wbApplication::addRecentFile(path);
    return report(error, tr("Saved as %1.").arg(QFileInfo(path).fileName()));
}

bool wbFileMenu::importModel(QString const& path)
{
    return report(m_document->importModel(path), tr("Imported %1.").arg(QFileInfo(path).fileName()));
}

bool wbFileMenu::mergeFiles(QStringList const& paths)
{
    QString error;
    {
        wbMainWindow::Pause pause(m_window);
        error = m_document->merge(paths);
    }
    return report(error, tr("Merged %n document(s).", nullptr, paths.size()));
}

bool wbFileMenu::exportModel(QString const& path)
{
    return report(m_document->exportModel(path), tr("Exported to %1.").arg(QFileInfo(path).fileName()));
}

void wbFileMenu::setBackgroundColour(QColor const& colour)
{
    iNodeGroup* setting = iSettingsManagerBase::getSettingsLayer()->findObjectByName(backgroundSetting);
    if (!setting)
        return;
    setting->setPropertyValue<iColor4>(backgroundSetting,
                                       iColor4(colour.redF(), colour.greenF(), colour.blueF(), 1.0f));
    if (iViewerManager* viewers = iViewerManager::getInstance())
        viewers->applySettingsChanges();
    if (!wbApplication::writeSettings())
        report(tr("The settings could not be written to %1.").arg(wbApplication::settingsFile()), QString());
}

void wbFileMenu::askOpen()
{
    QString const path = QFileDialog::getOpenFileName(m_window, tr("Open"), QString(), tr(documentFilter));
    if (!path.isEmpty())
        openFile(path);
}

void wbFileMenu::askSaveAs()
{
    QString path = QFileDialog::getSaveFileName(m_window, tr("Save as"), m_document->fileName(), tr(documentFilter));
    if (path.isEmpty())
        return;
    if (QFileInfo(path).suffix().isEmpty())
        path += ".ims";
    saveAs(path);
}

void wbFileMenu::askImport()
{
    QString const path = QFileDialog::getOpenFileName(m_window, tr("Import model"), QString(), modelFilter());
    if (!path.isEmpty())
        importModel(path);
}

void wbFileMenu::askMerge()
{
    QStringList const paths =
        QFileDialog::getOpenFileNames(m_window, tr("Merge documents"), QString(), tr(documentFilter));
    if (!paths.isEmpty())
        mergeFiles(paths);
}

void wbFileMenu::askExport()
{
    QString const path = QFileDialog::getSaveFileName(m_window, tr("Export drawing"), QString(), modelFilter());
    if (!path.isEmpty())
        exportModel(path);
}

void wbFileMenu::askBackground()
{
    osg::Vec4f const now = iViewerManager::readBackgroundColor();
    QColor const colour = QColorDialog::getColor(QColor::fromRgbF(now.r(), now.g(), now.b()), m_window,
                                                 tr("Background colour"));
    if (colour.isValid())
        setBackgroundColour(colour);
}

void wbFileMenu::fillRecent()
{
    m_recent->clear();
    QStringList const files = wbApplication::recentFiles();
    for (QString const& path : files) {
        QAction* action = m_recent->addAction(QFileInfo(path).fileName());
        action->setToolTip(path);
        connect(action, &QAction::triggered, this, [this, path] { openFile(path); });
    }
    if (files.isEmpty())
        m_recent->addAction(tr("(none)"))->setEnabled(false);
}
