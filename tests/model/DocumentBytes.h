#ifndef IMODELSTAGE_TESTS_MODEL_DOCUMENT_BYTES_H
#define IMODELSTAGE_TESTS_MODEL_DOCUMENT_BYTES_H

// Document files built by hand from the stream encoding, never by the code
// under test.

#include "model/ModelTestSupport.h"

inline char const* const kFileId = "iModelStage::iLayersManager::id::240608";
inline long const kLayerA = 900100;
inline long const kLayerB = 900101;

inline std::string header(std::string const& className, std::vector<int> const& versions)
{
    return str(className) + ints(versions);
}

// Header, iRoot level (id, name), iNodeGroup level (all flags, layer id).
inline std::string objectStart(char const* className, std::vector<int> const& versions, long id,
                               std::string const& name, std::string const& layer)
{
    return header(className, versions) + i32(id) + str(name) + i32(-1) + str(layer);
}

inline std::string nodeObject(long id, std::string const& name, std::string const& layer)
{
    return objectStart("iNodeGroup", {1}, id, name, layer);
}

// A translation only: the local matrix row by row, then the free dof.
inline std::string transformObject(long id, std::string const& name, std::string const& layer, double x, double y,
                                   double z)
{
    std::string out = objectStart("iTransformGroup", {1, 1}, id, name, layer);
    for (double value : {1., 0., 0., 0., 0., 1., 0., 0., 0., 0., 1., 0., x, y, z, 1.})
        out += f64(value);
    return out + i32(0xffffff);
}

// Class name, then as a sized block the object and its parent ids.
inline std::string record(std::string const& className, std::string const& object, std::vector<int> const& parents = {})
{
    return str(className) + str(object + ints(parents));
}

inline std::string layerBody(long id, std::vector<std::string> const& records,
                             std::vector<std::pair<int, int>> const& proxies = {},
                             std::vector<int> const& selected = {}, int version = 4)
{
    std::string out = header("iNodeLayer", {1, version}) + i32(id) + str("") + i32(records.size());
    for (std::string const& r : records)
        out += r;
    if (version >= 2) {
        out += i32(proxies.size());
        for (auto const& proxy : proxies)
            out += i32(proxy.first) + i32(proxy.second);
    }
    return version >= 4 ? out + ints(selected) : out;
}

// The total size covers the fields up to the last layer; what stands
// behind the layers and the current layer name are outside it.
inline std::string document(std::vector<std::pair<std::string, std::string>> const& layers, std::string const& current,
                            int version = 2, std::string const& behindLayers = "")
{
    std::string fields = str(kFileId) + i32(version) + i32(1) + i32(layers.size());
    for (auto const& layer : layers)
        fields += str(layer.first) + str(layer.second);
    return i32(4 + fields.size()) + fields + behindLayers + str(current);
}

// Layer "a": a transform P at (1,2,3) with a child C, C proxied by P, P
// selected; layer "b" empty; "a" current.
inline std::string smallDocument()
{
    std::string const a = layerBody(kLayerA,
                                    {record("iTransformGroup", transformObject(900001, "P", "a", 1, 2, 3)),
                                     record("iNodeGroup", nodeObject(900002, "C", "a"), {900001})},
                                    {{900002, 900001}}, {900001});
    return document({{"a", a}, {"b", layerBody(kLayerB, {})}}, "a");
}

#endif
