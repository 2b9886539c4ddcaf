#include <iModelStage/reporting/iDBScanner.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/reporting/iDBScannerHandler.h>

#include <algorithm>
#include <fstream>

iDBScanner::iDBScanner(iDBScannerHandler* handler) : m_handler(handler)
{
}

void iDBScanner::addFilePath(std::string const& path)
{
    if (std::find(m_paths.begin(), m_paths.end(), path) == m_paths.end())
        m_paths.push_back(path);
}

void iDBScanner::collectObjects(iNodeLayer* target)
{
    for (std::string const& path : m_paths)
        collectObjectsFromFile(path, target);
}

void iDBScanner::collectObjectsFromFile(std::string const& path, iNodeLayer* target)
{
    if (!m_handler)
        return;
    std::filebuf file;
    if (!file.open(path, std::ios_base::in | std::ios_base::binary))
        return;
    iInStream stream(&file);
    m_handler->collectObjects(stream, target, path, m_filter);
}

void iDBScanner::addObjectsToDB(NodeList const& list)
{
    if (m_handler)
        m_handler->addObjectsToDB(list);
}

bool iDBScanner::isValidFile(std::string const& path)
{
    return m_handler && m_handler->isValidFile(path);
}
