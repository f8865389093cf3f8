#ifndef TEXT_UTF8_P_H
#define TEXT_UTF8_P_H

#include <QtCore/QString>

namespace vlm
{
// True when the text's UTF-8 form has at most maxBytes bytes.
bool fitsUtf8(const QString &text, int maxBytes);

// The text cut so that its UTF-8 form has at most maxBytes bytes; unchanged for a limit below 1. It
// ends at an embedded zero character. What remains of a character that the limit cuts becomes
// replacement characters, if they still fit.
QString clipped(const QString &text, int maxBytes);
} // namespace vlm

#endif
