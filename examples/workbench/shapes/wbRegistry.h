#pragma once

// Registers what the library leaves to its host: the workbench's renderers,
// snaps, handlers, manipulators, import callbacks and checks, with the
// Italian labels of the workbench's classes and properties. Call once,
// after the library's start-up and before the first document is loaded;
// later calls do nothing.
void wbRegisterClasses();

// The key under which the workbench's document checks are registered with
// iExceptionManager.
extern char const* const wbChecksKey;
