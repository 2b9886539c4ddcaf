#ifndef IMODELSTAGE_FRAME_UNKNOWNPROPERTYERROR_H
#define IMODELSTAGE_FRAME_UNKNOWNPROPERTYERROR_H

#include <iModelStage/frame/iExport.h>

#include <stdexcept>
#include <string>

// Thrown when a class is asked for a property it does not have: a
// programming fault, reported rather than left undefined.
class IMODELSTAGE_EXPORT UnknownPropertyError : public std::runtime_error {
public:
    explicit UnknownPropertyError(std::string const& what) : std::runtime_error(what) {}
};

#endif
