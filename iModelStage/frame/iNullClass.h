#ifndef IMODELSTAGE_FRAME_INULLCLASS_H
#define IMODELSTAGE_FRAME_INULLCLASS_H

// Empty marker base of iRoot.
class iNullClass {};

#endif
