// Feeds arbitrary bytes to the settings reader through a file, as the
// application does, then writes the settings out, reads the input again on
// top of what it built, restores the defaults and reads our own output
// back. The settings layer is put back as it started after every input, so
// that runs do not depend on each other.
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/model/iSettingNodeBase.h>
#include <iModelStage/model/iSettingsManagerBase.h>

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

char const* const kColourSetting = "iModelStage_viewerbg";

[[noreturn]] void failCheck(char const* what)
{
    std::fprintf(stderr, "ReadSettingsFuzzer: %s\n", what);
    std::abort();
}

struct Scratch {
    std::string directory;
    std::string input;
    std::string output;
    osg::ref_ptr<iSettingNodeBase> colour;
};

void removeScratch();

Scratch& scratch()
{
    static Scratch* state = [] {
        auto* s = new Scratch;
        char const* base = std::getenv("TMPDIR");
        std::string pattern = std::string(base && *base ? base : "/tmp") + "/ReadSettingsFuzzer.XXXXXX";
        if (!mkdtemp(&pattern[0]))
            failCheck("cannot create a scratch directory");
        s->directory = pattern;
        s->input = s->directory + "/input.settings";
        s->output = s->directory + "/output.settings";
        // The setting the library built at load; every input starts from it.
        s->colour = dynamic_cast<iSettingNodeBase*>(
            iSettingsManagerBase::getSettingsLayer()->findObjectByName(kColourSetting));
        if (!s->colour)
            failCheck("the colour setting is missing");
        std::atexit(removeScratch);
        return s;
    }();
    return *state;
}

void removeScratch()
{
    Scratch& s = scratch();
    std::remove(s.input.c_str());
    std::remove(s.output.c_str());
    rmdir(s.directory.c_str());
}

void writeFile(std::string const& path, std::uint8_t const* data, std::size_t size)
{
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file)
        failCheck("cannot write the input file");
    if (size > 0 && std::fwrite(data, 1, size, file) != size)
        failCheck("cannot write the input file");
    if (std::fclose(file) != 0)
        failCheck("cannot write the input file");
}

void walk()
{
    iNodeLayer* layer = iSettingsManagerBase::getSettingsLayer();
    NodeList objects;
    layer->getObjectsList(layer->getObjectsRoot(), objects, nullptr);
    for (osg::ref_ptr<osg::Node> const& node : objects) {
        iNodeGroup* object = dynamic_cast<iNodeGroup*>(node.get());
        if (!object)
            continue;
        if (!layer->findObjectByName(object->get_name()))
            failCheck("a setting cannot be found by its name");
        (void)layer->findObjectByUniqueId(object->getUniqueId());
    }
}

void reset()
{
    Scratch& s = scratch();
    iNodeLayer* layer = iSettingsManagerBase::getSettingsLayer();
    layer->removeAllObjects();
    if (!iSettingsManagerBase::addNewPropertyObject(s.colour.get()))
        failCheck("the colour setting could not be put back");
    s.colour->restoreDefaultValue();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Scratch& s = scratch();
    writeFile(s.input, data, size);

    bool const accepted = iSettingsManagerBase::read(s.input.c_str());
    walk();
    bool const written = iSettingsManagerBase::write(s.output.c_str());
    // A second read replaces what the first one added and drops its ghosts.
    if (accepted)
        iSettingsManagerBase::read(s.input.c_str());
    walk();
    iSettingsManagerBase::restoreDefaultValues();
    if (written && !iSettingsManagerBase::read(s.output.c_str()))
        failCheck("settings written by the library were refused");
    walk();

    reset();
    return 0;
}
