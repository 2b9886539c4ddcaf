#ifndef IMODELSTAGE_FRAME_IEXPORT_H
#define IMODELSTAGE_FRAME_IEXPORT_H

// Marks the classes and functions that the shared library exports.
#define IMODELSTAGE_EXPORT __attribute__((visibility("default")))

#endif
