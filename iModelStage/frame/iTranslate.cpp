#include <iModelStage/frame/iTranslate.h>

#include <mutex>
#include <unordered_set>

namespace {

struct Translations {
    std::mutex mutex;
    std::string domain;
    std::map<std::string, std::map<std::string, std::string>> catalogues;
    // Every text handed out, so that the pointers stay valid; node-based, so
    // insertions never move an element.
    std::unordered_set<std::string> interned;
};

Translations& translations()
{
    static Translations* state = new Translations;
    return *state;
}

} // namespace

void iBindLocale(char const* domain)
{
    Translations& t = translations();
    std::lock_guard<std::mutex> lock(t.mutex);
    t.domain = domain ? domain : "";
}

std::string iBoundLocale()
{
    Translations& t = translations();
    std::lock_guard<std::mutex> lock(t.mutex);
    return t.domain;
}

char* iTranslate(char const* text)
{
    Translations& t = translations();
    std::lock_guard<std::mutex> lock(t.mutex);
    std::string key = text ? text : "";
    std::string const* result = &key;
    auto catalogue = t.catalogues.find(t.domain);
    if (catalogue != t.catalogues.end()) {
        auto entry = catalogue->second.find(key);
        if (entry != catalogue->second.end())
            result = &entry->second;
    }
    auto it = t.interned.insert(*result).first;
    return const_cast<char*>(it->c_str());
}

void iLoadCatalogue(char const* domain, std::map<std::string, std::string> const& texts)
{
    Translations& t = translations();
    std::lock_guard<std::mutex> lock(t.mutex);
    t.catalogues[domain ? domain : ""] = texts;
}
