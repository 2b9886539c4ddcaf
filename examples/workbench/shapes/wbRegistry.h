#pragma once

// Registers what the library leaves to its host: the workbench's renderers,
// snaps, handlers, manipulators, import callbacks and checks. Call once,
// after the library's start-up and before the first document is loaded.
void wbRegisterClasses();
