#pragma once

#include <iModelStage/geometry/iImportExportCallBack.h>

#include <iosfwd>

class iTransformGroup;

// Reads lists of points from text files (".pts", ".csv") as polylines.
//
// One point per line: two or three numbers (z is 0 when missing),
// separated by commas, semicolons, blanks or tabs, in the C locale. An
// empty line ends a polyline and starts the next; lines starting with '#'
// are comments. A polyline whose last point repeats its first is closed.
//
// The result is an iTransformGroup named after the file, holding one
// wbPolyline per list (placed at its first point, built and ready to
// draw), for the caller to add to a document with its subtree. A file that
// breaks any of these rules, a list of a single point, or a file larger
// than MaxFileSize is refused whole: the import gives null.
class wbPointListImport : public iImportExportCallBack {
    I_CLASS(wbPointListImport, iImportExportCallBack, 1)
public:
    static constexpr long long MaxFileSize = 64ll << 20;

    wbPointListImport() = default;

    std::vector<std::string> getHandledFileExtesions() override;
    osg::Node* importFromFile(std::string const& fileName) override;

    // The same from a stream; null for damaged input.
    static iTransformGroup* importFromStream(std::istream& in, std::string const& name);
};
