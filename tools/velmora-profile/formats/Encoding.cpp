#include "tools/velmora-profile/formats/Encoding.h"

#include <cerrno>
#include <cstdint>
#include <iconv.h>

namespace
{
using profile::Decoded;

const char kUtf8Mark[] = "\xEF\xBB\xBF";
const char kUtf16LittleEndianMark[] = "\xFF\xFE";
const char kUtf16BigEndianMark[] = "\xFE\xFF";
const char kReplacement[] = "\xEF\xBF\xBD";

// Where pages name their encoding if they do.
const int kHeadBytes = 4096;

struct Alias {
    const char *name;
    const char *encoding;
};

// The names as browsers understand them: with the characters that vendors added.
const Alias kAliases[] = {
    {"shift_jis", "CP932"},
    {"shift-jis", "CP932"},
    {"sjis", "CP932"},
    {"x-sjis", "CP932"},
    {"ms_kanji", "CP932"},
    {"ms932", "CP932"},
    {"windows-31j", "CP932"},
    {"csshiftjis", "CP932"},
    {"euc-jp", "EUC-JP-MS"},
    {"x-euc-jp", "EUC-JP-MS"},
    {"eucjp", "EUC-JP-MS"},
    {"cseucpkdfmtjapanese", "EUC-JP-MS"},
    {"iso-8859-1", "CP1252"},
    {"iso8859-1", "CP1252"},
    {"latin1", "CP1252"},
    {"ascii", "CP1252"},
    {"us-ascii", "CP1252"},
    {"utf8", "UTF-8"},
    {"unicode-1-1-utf-8", "UTF-8"},
};

bool isPartOfName(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') || byte == '-'
           || byte == '_' || byte == '.' || byte == ':';
}

QByteArray encodingOfMark(const QByteArray &content)
{
    if (content.startsWith(kUtf8Mark)) {
        return "utf-8";
    }
    if (content.startsWith(kUtf16LittleEndianMark)) {
        return "utf-16le";
    }
    return content.startsWith(kUtf16BigEndianMark) ? "utf-16be" : QByteArray();
}

// The value behind a key like charset, up to the end of the tag; the text is lower case.
QByteArray valueBehind(const QByteArray &key, const QByteArray &tag)
{
    const int found = int(tag.indexOf(key));
    const int equals = found < 0 ? -1 : int(tag.indexOf('=', found));
    if (equals < 0) {
        return QByteArray();
    }
    int begin = equals + 1;
    while (begin < tag.size() && !isPartOfName(tag.at(begin))) {
        ++begin;
    }
    int end = begin;
    while (end < tag.size() && isPartOfName(tag.at(end))) {
        ++end;
    }
    return tag.mid(begin, end - begin);
}

QByteArray converterOf(const QByteArray &encoding)
{
    for (const Alias &alias : kAliases) {
        if (encoding == alias.name) {
            return alias.encoding;
        }
    }
    return encoding;
}

class Converter
{
public:
    explicit Converter(const QByteArray &encoding)
        : m_handle(iconv_open("UTF-8", converterOf(encoding).constData()))
    {
    }
    ~Converter()
    {
        if (isOpen()) {
            iconv_close(m_handle);
        }
    }
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;

    bool isOpen() const { return reinterpret_cast<std::intptr_t>(m_handle) != -1; }

    // Appends as much as can be converted: false at a byte that cannot. Without bytes: what the
    // converter keeps back to see what follows.
    bool convert(char **from, size_t *left, QByteArray *utf8)
    {
        char buffer[4096];
        size_t result = 0;
        do {
            char *to = buffer;
            size_t space = sizeof buffer;
            result = iconv(m_handle, from, left, &to, &space);
            utf8->append(buffer, int(to - buffer));
        } while (result == size_t(-1) && errno == E2BIG);
        return result != size_t(-1);
    }

private:
    iconv_t m_handle;
};

QByteArray withoutMark(const QByteArray &content)
{
    if (content.startsWith(kUtf8Mark)) {
        return content.mid(int(sizeof kUtf8Mark) - 1);
    }
    return encodingOfMark(content).isEmpty() ? content : content.mid(2);
}

// What could be read byte by byte this far is no UTF-16 and the like, whatever it says.
QByteArray plausible(const QByteArray &name)
{
    const Decoded sample = profile::decoded("<", name);
    return sample.isKnown && sample.utf8 != "<" ? QByteArray("utf-8") : name;
}

// By how much reading goes on behind what cannot be read.
size_t unitBytes(const QByteArray &encoding) { return encoding.startsWith("utf-16") ? 2 : 1; }
} // namespace

QByteArray profile::encodingOfPage(const QByteArray &page)
{
    const QByteArray mark = encodingOfMark(page);
    if (!mark.isEmpty()) {
        return mark;
    }
    const QByteArray head = page.left(kHeadBytes).toLower();
    for (int meta = int(head.indexOf("<meta")); meta >= 0;
         meta = int(head.indexOf("<meta", meta + 1))) {
        const QByteArray tag = head.mid(meta, int(head.indexOf('>', meta)) - meta);
        const QByteArray name = valueBehind("charset", tag);
        if (!name.isEmpty()) {
            return plausible(name);
        }
    }
    return QByteArray();
}

QByteArray profile::encodingOfXml(const QByteArray &document)
{
    const QByteArray mark = encodingOfMark(document);
    if (!mark.isEmpty()) {
        return mark;
    }
    const QByteArray head = document.left(kHeadBytes).toLower();
    if (!head.startsWith("<?xml")) {
        return QByteArray();
    }
    return plausible(valueBehind("encoding", head.left(int(head.indexOf("?>")))));
}

QByteArray profile::guessedEncoding(const QByteArray &page)
{
    for (const char *const encoding : {"utf-8", "euc-jp", "shift_jis"}) {
        if (decoded(page, encoding).replaced == 0) {
            return encoding;
        }
    }
    return "windows-1252";
}

Decoded profile::decoded(const QByteArray &content, const QByteArray &encoding)
{
    Decoded result = {false, QByteArray(), 0};
    Converter converter(encoding);
    if (!converter.isOpen()) {
        return result;
    }
    result.isKnown = true;
    QByteArray bytes = withoutMark(content);
    char *from = bytes.data();
    size_t left = size_t(bytes.size());
    while (!converter.convert(&from, &left, &result.utf8)) {
        result.utf8 += kReplacement;
        ++result.replaced;
        const size_t skipped = qMin(left, unitBytes(encoding));
        from += skipped;
        left -= skipped;
    }
    converter.convert(nullptr, nullptr, &result.utf8);
    return result;
}
