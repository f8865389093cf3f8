#ifndef TESTS_DURABILITY_FILLEDTREE_H
#define TESTS_DURABILITY_FILLEDTREE_H

#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLWriter.h"
#include "tests/support/Files.h"

/// What writeTree() writes to a file.
inline QByteArray document(int fill)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<r>" + QByteArray(fill, 'x') + "</r>\n";
}

/// Writes a tree whose text is this long.
inline bool writeTree(QString path, int fill)
{
    VLMC_XMLNode root(nullptr, 0);
    QString name = utf8("r");
    QString text(fill, QLatin1Char('x'));
    root.setName(name);
    root.setText(text);
    VLMC_XMLWriter writer;
    return writer.write(path, &root);
}

#endif
