#ifndef IMODELSTAGE_TESTS_DIMENSIONING_TEST_SUPPORT_H
#define IMODELSTAGE_TESTS_DIMENSIONING_TEST_SUPPORT_H

#include "support/GeometricsDocumentTest.h"

#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/interaction/iIAPoint.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iUndoRedoManager.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <unistd.h>

// A point as the event handler gives it with no viewer: local and global
// positions agree.
inline iIAPoint pointAt(float x, float y, float z = 0.0f)
{
    osg::Vec3f const p(x, y, z);
    return iIAPoint(osg::Vec3f(), osg::Vec3f(x, y, 0.0f), p, p);
}

// A document with a geometrics layer, as the quote tools change it.
class DocumentTest : public GeometricsDocumentTest {
protected:
    unsigned int objectCount() const { return layer->getObjectsRoot()->getNumChildren(); }
    osg::Node* firstObject() const { return objectCount() ? layer->getObjectsRoot()->getChild(0) : nullptr; }
    std::size_t undoSteps() const { return document->getUndoRedoManager()->getUndoList().size(); }
};

#endif
