#ifndef EXAMPLES_KIOSK_TEXT_H
#define EXAMPLES_KIOSK_TEXT_H

#include <QtCore/QString>

// A text from a UTF-8 literal.
inline QString text(const char *utf8) { return QString::fromUtf8(utf8); }

#endif
