#ifndef IMODELSTAGE_FRAME_ITRANSLATE_H
#define IMODELSTAGE_FRAME_ITRANSLATE_H

#include <iModelStage/frame/iExport.h>

#include <map>
#include <string>

// User texts are Italian and serve as the keys of the translation
// catalogue of the bound domain.

// Sets the translation domain of the process.
IMODELSTAGE_EXPORT void iBindLocale(char const* domain);
// The bound domain.
IMODELSTAGE_EXPORT std::string iBoundLocale();
// The text in the current language: the catalogue's entry for the key, or
// the key itself. The result stays valid for the life of the process.
IMODELSTAGE_EXPORT char* iTranslate(char const* text);
// Loads (or replaces) the catalogue of a domain: key to translated text.
IMODELSTAGE_EXPORT void iLoadCatalogue(char const* domain, std::map<std::string, std::string> const& texts);

#endif
