#ifndef REFERENCES_H
#define REFERENCES_H

#include <QtCore/QString>

// A pass of QXmlStreamReader that looks at every start tag, attribute and text and keeps nothing;
// the number of what it has seen, -1 when the file cannot be opened.
qint64 readerPass(const QString &path);

#endif
