#ifndef TESTS_SUPPORT_SAVEDDOCUMENTS_H
#define TESTS_SUPPORT_SAVEDDOCUMENTS_H

/// Every document that a test saves is held against the schema of its kind in docs/schema/, and the
/// test fails where it does not conform. A program does so by having this piece among its objects:
/// it takes the place of the reader's and the writer's operations on files.
///
/// Nothing is asked of a document that came out of a file which does not conform itself (what a
/// store does not know it keeps), and of one of no store's kind. While an object of this class
/// lives no test fails for a document: for tests that break a limit on purpose, through an
/// operation that checks none, or that use a store's base for documents of their own.
class ForeignDocuments
{
public:
    ForeignDocuments();
    ~ForeignDocuments();
    ForeignDocuments(const ForeignDocuments &) = delete;
    ForeignDocuments &operator=(const ForeignDocuments &) = delete;
};

/// How many saved documents were found to conform so far.
int conformingDocuments();
/// How many did not while a ForeignDocuments lived.
int mutedDocuments();

#endif
