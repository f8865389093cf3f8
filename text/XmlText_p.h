#ifndef TEXT_XMLTEXT_P_H
#define TEXT_XMLTEXT_P_H

#include <QtCore/QString>

namespace vlm
{
// True if every character of the text can be written to an XML 1.0 document in UTF-8, with every
// version of Qt.
bool isXmlText(const QString &text);

// The text without what would make the document unreadable: control characters other than TAB, LF
// and CR and unpaired surrogates are left out, non-characters become "?". The usual text comes back
// shared, not copied.
QString xmlText(const QString &text);
} // namespace vlm

#endif
