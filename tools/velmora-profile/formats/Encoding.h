#ifndef TOOLS_VELMORA_PROFILE_FORMATS_ENCODING_H
#define TOOLS_VELMORA_PROFILE_FORMATS_ENCODING_H

#include <QtCore/QByteArray>

// The encodings of bookmark files. What a parser makes of an encoding differs between parsers and
// their versions, and some stop at the first byte that is wrong; so all get UTF-8.
namespace profile
{
// What a page or document names itself: by its first bytes, in a <meta> or in its declaration.
// Empty when it names none.
QByteArray encodingOfPage(const QByteArray &page);
QByteArray encodingOfXml(const QByteArray &document);

// The encoding that fits all bytes of a page that names none: UTF-8, else one of Japan, else that
// of Western Europe, which many do not fit either.
QByteArray guessedEncoding(const QByteArray &page);

struct Decoded {
    bool isKnown; // the encoding is one that can be read
    QByteArray utf8;
    int replaced; // bytes that are none of the encoding: U+FFFD stands for each (in UTF-16, units)
};

Decoded decoded(const QByteArray &content, const QByteArray &encoding);
} // namespace profile

#endif
