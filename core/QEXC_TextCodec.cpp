#include "core/QEXC_TextCodec.h"

#include "core/QtCompat_p.h"
#include "core/StaticInit_p.h"

namespace
{
// Looked up when the library is loaded and never changed. A class only because nothing else can be
// given an order of initialisation.
struct SjisCodec {
    SjisCodec() : codec(QTextCodec::codecForName("SJIS")) {}
    QTextCodec *const codec;
};

const SjisCodec sjis VLM_INIT_PRIORITY(VLM_INIT_CODEC);

bool isAscii(const char *text)
{
    for (; *text; ++text) {
        if (static_cast<unsigned char>(*text) > 0x7F) {
            return false;
        }
    }
    return true;
}
} // namespace

QString QEXC_TextCodec::fromSJIS(const char *text)
{
    // The library's own literals are ASCII, and some codecs permute ASCII's control characters.
    if (!text || !sjis.codec || isAscii(text)) {
        return QString::fromLatin1(text);
    }
    return sjis.codec->toUnicode(text);
}
