#ifndef LIVINGOBJECTS_H
#define LIVINGOBJECTS_H

/// How many objects that were made with new, in the program or in a library, have not been deleted.
/// A program that links this brings the operators that count them.
int livingObjects();

#endif
