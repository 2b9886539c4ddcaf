#include "app/wbDocumentFile.h"

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iMemoryBuffer.h>
#include <iModelStage/model/iLayersManager.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <exception>

namespace {

// Walks the container; true when every entry lies where the file says.
bool walkLayers(iInStream& in, bool& sawId)
{
    int const total = in.readInt();
    std::string const id = in.readString();
    if (id != iLayersManager::FileId)
        throw wbDocumentFile::NotADocument;
    sawId = true;
    int const version = in.readInt();
    if (version != 1 && version != 2)
        return false;
    in.readInt();
    int const layers = in.readInt();
    if (layers < 0)
        return false;
    for (int i = 0; i < layers; ++i) {
        in.readString();
        int const size = in.readInt();
        in.requireBytes(size);
        in.seekg(size, std::ios_base::cur);
    }
    if (in.tellg() != std::streampos(total))
        return false;
    if (version == 2)
        in.readString();
    return true;
}

} // namespace

wbDocumentFile::Problem wbDocumentFile::check(QString const& path)
{
    QFileInfo const info(path);
    if (!info.exists())
        return Missing;
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        return Unreadable;
    QByteArray const bytes = file.readAll();
    iMemoryBuffer buffer(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    iInStream in(&buffer);
    in.exceptions(std::ios_base::failbit | std::ios_base::badbit);
    bool sawId = false;
    try {
        return walkLayers(in, sawId) ? Fine : Damaged;
    } catch (Problem problem) {
        return problem;
    } catch (std::exception const&) {
        // A file too short for the id is no document at all.
        return sawId ? Damaged : NotADocument;
    }
}

QString wbDocumentFile::describe(Problem problem, QString const& path)
{
    QString const name = QFileInfo(path).fileName();
    switch (problem) {
    case Fine:
        return QString();
    case Missing:
        return QCoreApplication::translate("wbDocumentFile", "The file \"%1\" does not exist.").arg(path);
    case Unreadable:
        return QCoreApplication::translate("wbDocumentFile", "The file \"%1\" cannot be read.").arg(path);
    case NotADocument:
        return QCoreApplication::translate("wbDocumentFile", "\"%1\" is not a workbench document.").arg(name);
    case Damaged:
        return QCoreApplication::translate("wbDocumentFile",
                                           "\"%1\" is damaged: it ends before the document does, or its "
                                           "parts do not fit together. Your document was not changed.")
            .arg(name);
    }
    return QString();
}
