#ifndef IMODELSTAGE_FRAME_IFONTSUBSTITUTES_H
#define IMODELSTAGE_FRAME_IFONTSUBSTITUTES_H

#include <iModelStage/frame/iExport.h>

#include <string>

// The library's texts name "fonts/tahoma.ttf", which free systems do not
// have. This puts a directory at the end of the scene library's data-file
// path in which that name leads to a free font of the system (DejaVu Sans),
// so that a font the host or the system provides under the name still
// comes first.
class IMODELSTAGE_EXPORT iFontSubstitutes {
public:
    iFontSubstitutes() = delete;

    // Prepares the directory, in the user's cache or else the temporary
    // directory, and enters it in the data-file path. Returns it, or an
    // empty string when the substitute font is missing or no directory can
    // be prepared; nothing is reported.
    static std::string install();
};

#endif
