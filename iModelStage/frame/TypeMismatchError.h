#ifndef IMODELSTAGE_FRAME_TYPEMISMATCHERROR_H
#define IMODELSTAGE_FRAME_TYPEMISMATCHERROR_H

#include <iModelStage/frame/iExport.h>

#include <stdexcept>
#include <string>

// Thrown when a property is read or written with a type other than its own,
// or on an object of a class that does not have it. The text is the
// property's name, or "object" when the object is the culprit.
class IMODELSTAGE_EXPORT TypeMismatchError : public std::runtime_error {
public:
    explicit TypeMismatchError(std::string const& what) : std::runtime_error(what) {}
};

#endif
