#pragma once

#include <QString>

// The workbench's sample: a small design made of the workbench's shapes (a
// plinth, a block, a column, a rail and a label) with two dimensions,
// written as a document. The file under samples/ was made with it
// (workbench --write-sample samples/sample.ims).
class wbSample {
public:
    // Replaces the open document by the sample and saves it at path; an
    // empty text on success, else why not.
    static QString write(class wbDocument* document, QString const& path);
};
