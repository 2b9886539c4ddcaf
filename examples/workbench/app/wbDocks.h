#pragma once

class wbMainWindow;
class wbObjectTree;
class wbPropertyEditor;

// The dock panels around the viewers: the object tree, the property
// editor, the undo history, the check report, the search and the shape
// palette. They follow the document at each tick of the window.
class wbDocks {
public:
    static void build(wbMainWindow* window);
};
