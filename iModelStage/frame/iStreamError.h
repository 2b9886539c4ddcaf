#ifndef IMODELSTAGE_FRAME_ISTREAMERROR_H
#define IMODELSTAGE_FRAME_ISTREAMERROR_H

#include <iModelStage/frame/iExport.h>

#include <ios>
#include <string>

// Thrown by iInStream and iOutStream when a value cannot be read or written:
// a short stream, a length or count larger than what is left, a write error,
// an object header that does not fit its class.
class IMODELSTAGE_EXPORT iStreamError : public std::ios_base::failure {
public:
    explicit iStreamError(std::string const& what) : std::ios_base::failure(what) {}
};

#endif
