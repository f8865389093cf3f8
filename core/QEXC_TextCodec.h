#ifndef QEXC_TEXTCODEC_H
#define QEXC_TEXTCODEC_H

#include "core/VLM_Export.h"

#include <QtCore/QString>

/**
 * Text from Shift JIS byte strings. Every element name, attribute name and file name that the
 * library uses passes through here. Reentrant; usable from static initialisers that run after the
 * library's own.
 */
class VLM_EXPORT QEXC_TextCodec
{
public:
    /// The text of a zero-terminated Shift JIS byte string; empty for null. ASCII bytes stand for
    /// themselves. Where Qt has no Shift JIS codec, other bytes are read as Latin-1.
    static QString fromSJIS(const char *text);
};

#endif
