#include "shapes/wbPointListImport.h"

#include "shapes/wbPolyline.h"

#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/model/iTransformGroup.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <locale>
#include <sstream>
#include <vector>

I_REGISTER_CLASS(wbPointListImport)

namespace {

bool handledName(std::string const& fileName)
{
    std::string extension = std::filesystem::path(fileName).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".pts" || extension == ".csv";
}

// A whole field is one finite number, blanks around it allowed.
bool parseNumber(std::string const& field, double& value)
{
    std::istringstream in(field);
    in.imbue(std::locale::classic());
    if (!(in >> value) || !std::isfinite(value))
        return false;
    in >> std::ws;
    return in.eof();
}

// Fields between commas or semicolons, where the line has any (an empty
// field is kept, and refused later); otherwise between blanks.
std::vector<std::string> splitFields(std::string const& line)
{
    std::vector<std::string> fields;
    if (line.find_first_of(",;") != std::string::npos) {
        std::string text = line;
        std::replace(text.begin(), text.end(), ';', ',');
        for (size_t start = 0;;) {
            size_t const comma = text.find(',', start);
            fields.push_back(text.substr(start, comma == std::string::npos ? std::string::npos : comma - start));
            if (comma == std::string::npos)
                return fields;
            start = comma + 1;
        }
    }
    std::istringstream in(line);
    for (std::string field; in >> field;)
        fields.push_back(field);
    return fields;
}

// Two or three numbers and nothing else.
bool parsePoint(std::string const& line, osg::Vec3f& point)
{
    std::vector<std::string> const fields = splitFields(line);
    if (fields.size() < 2 || fields.size() > 3)
        return false;
    double xyz[3] = {0.0, 0.0, 0.0};
    for (size_t i = 0; i < fields.size(); ++i)
        if (!parseNumber(fields[i], xyz[i]))
            return false;
    point.set(float(xyz[0]), float(xyz[1]), float(xyz[2]));
    return true;
}

bool blank(std::string const& line)
{
    return std::all_of(line.begin(), line.end(), [](unsigned char c) { return std::isspace(c); });
}

// A list of one point is no line; an empty list (two blank lines) is none.
bool addPolyline(iTransformGroup* group, std::vector<osg::Vec3f>& points)
{
    if (points.empty())
        return true;
    if (points.size() < 2)
        return false;
    osg::ref_ptr<wbPolyline> polyline = new wbPolyline;
    bool const closed = points.size() > 2 && points.front() == points.back();
    if (closed)
        points.pop_back();
    osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
    for (osg::Vec3f const& p : points)
        vertices->push_back(p - points.front());
    polyline->setPosition(points.front());
    polyline->set_closed(closed);
    polyline->setVertices(*vertices);
    polyline->updateGeometry(true);
    group->addChild(polyline.get());
    points.clear();
    return true;
}

} // namespace

std::vector<std::string> wbPointListImport::getHandledFileExtesions()
{
    std::string const description = iTranslate("Elenco di punti");
    return {description + " (*.pts)", description + " (*.csv)"};
}

osg::Node* wbPointListImport::importFromFile(std::string const& fileName)
{
    if (!handledName(fileName))
        return nullptr;
    std::error_code error;
    auto const size = std::filesystem::file_size(fileName, error);
    if (error || size > static_cast<std::uintmax_t>(MaxFileSize))
        return nullptr;
    std::ifstream in(fileName, std::ios::binary);
    if (!in)
        return nullptr;
    return importFromStream(in, std::filesystem::path(fileName).stem().string());
}

iTransformGroup* wbPointListImport::importFromStream(std::istream& in, std::string const& name)
{
    osg::ref_ptr<iTransformGroup> group = new iTransformGroup;
    group->set_name(name);
    std::vector<osg::Vec3f> points;
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (!line.empty() && line[0] == '#')
            continue;
        osg::Vec3f point;
        if (blank(line)) {
            if (!addPolyline(group.get(), points))
                return nullptr;
        } else if (parsePoint(line, point)) {
            points.push_back(point);
        } else {
            return nullptr;
        }
    }
    if (!addPolyline(group.get(), points) || group->getNumChildren() == 0)
        return nullptr;
    return group.release();
}
