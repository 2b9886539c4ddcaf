// Prints what the library registers when it loads: the class table with
// parents and versions, and the user labels of the classes.
#include <iModelStage/iModelStage.h>

#include <cstdio>

int main()
{
    std::vector<std::string> classes;
    iRoot::getClassesList(classes);
    std::printf("%zu registered classes\n", classes.size());
    for (std::string const& name : classes) {
        std::string parent;
        iRoot::getParentClassName(name.c_str(), parent);
        std::printf("  %-36s parent %s\n", name.c_str(), parent.c_str());
    }
    std::printf("\nclass aliases:\n");
    static char const* const aliased[] = {
        "iGridGroup", "iFileReferenceGroup", "iGeometricsLayer", "iGridsLayer", "iImagesLayer",
        "iInputPlanesLayer", "iInputPlane", "iGeometricGroup", "iSelectIA", "iSelectWindowIA",
        "iRotateViewIA", "iZoomAllIA", "iZoomInIA", "iZoomOutIA", "iZoomInteractiveIA",
        "iZoomSelectedIA", "iZoomWindowIA", "iPanIA", "iGridSnap", "iPointSnap",
        "iNearestSnap", "iIntersectionSnap", "iCentroidSnap"};
    for (char const* name : aliased) {
        std::string alias;
        iRoot::getClassAlias(name, alias);
        QString icon = iGetClassIconsMap().value(name);
        std::printf("  %-24s %-24s %s\n", name, alias.c_str(), icon.toStdString().c_str());
    }
    return 0;
}
