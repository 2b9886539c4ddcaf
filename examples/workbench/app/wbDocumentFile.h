#pragma once

#include <QString>

// Looks at a document file before the document is replaced by it. Loading a
// file of another kind, or one cut short or damaged in its layer table,
// would leave the user with an empty or destroyed document; this check walks
// the container (ids, layer entries and sizes, the total) without building
// any object, so that such a file is refused while the open document stays.
class wbDocumentFile {
public:
    enum Problem { Fine, Missing, Unreadable, NotADocument, Damaged };

    static Problem check(QString const& path);
    // A sentence for the user about a problem of the file at path.
    static QString describe(Problem problem, QString const& path);
};
