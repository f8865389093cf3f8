#include "tests/identical/Documents.h"

#include <QtCore/QString>

namespace
{
const char kDeclaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
// Hiragana A, the one character outside ASCII in the documents.
const char kHiragana[] = "\xE3\x81\x82";
// Qt reads a file in pieces of 8 KiB, and loses those from the first damaged one on.
const int kBeyondFirstPiece = 9000;
const int kDeepLevels = 400;
const int kCuts = 16;

QByteArray replaced(QByteArray document, const QByteArray &before, const QByteArray &after)
{
    return document.replace(before, after);
}

QByteArray declared(const QByteArray &document, const char *encoding)
{
    return replaced(document, "UTF-8", encoding);
}

QByteArray utf16(const QByteArray &document, bool bigEndian)
{
    QByteArray bytes;
    const QString text =
        QChar(0xFEFF) + QString::fromUtf8(declared(document, "UTF-16").constData());
    for (const QChar unit : text) {
        const char high = char(unit.unicode() >> 8);
        const char low = char(unit.unicode() & 0xFF);
        bytes.append(bigEndian ? high : low);
        bytes.append(bigEndian ? low : high);
    }
    return bytes;
}

// The root's children stand between these.
int bodyStart(const QByteArray &document)
{
    return int(document.indexOf('\n', int(document.indexOf('\n')) + 1)) + 1;
}

int bodyEnd(const QByteArray &document) { return int(document.lastIndexOf("</")); }

QByteArray inserted(const QByteArray &document, int position, const QByteArray &bytes)
{
    return document.left(position) + bytes + document.mid(position);
}

QByteArray padded(const QByteArray &document)
{
    return inserted(document, bodyStart(document),
                    "<!--" + QByteArray(kBeyondFirstPiece, 'x') + "-->");
}

QByteArray deep(const QByteArray &document)
{
    return inserted(document, bodyStart(document),
                    QByteArray("<deep>").repeated(kDeepLevels)
                        + QByteArray("</deep>").repeated(kDeepLevels));
}

QByteArray inRoot(const QByteArray &document, const char *bytes)
{
    return inserted(document, bodyStart(document), bytes);
}

QByteArray rootOf(const QByteArray &document)
{
    const int start = int(document.indexOf('<', 1)) + 1;
    return document.mid(start, int(document.indexOf(' ', start)) - start);
}

QByteArray inProlog(const QByteArray &document, const QByteArray &bytes)
{
    return inserted(document, int(document.indexOf('\n')) + 1, bytes);
}

QByteArray withType(const QByteArray &document, const QByteArray &declarations)
{
    return inProlog(document, "<!DOCTYPE x [" + declarations + "]>\n");
}

// The texts of all elements without children in another form.
QByteArray withTexts(const QByteArray &document, const char *before, const char *after)
{
    QByteArray changed;
    const QList<QByteArray> lines = document.split('\n');
    for (QByteArray line : lines) {
        const int start = int(line.indexOf('>')) + 1;
        const int end = int(line.indexOf("</"));
        if (line.startsWith("    ") && start > 0 && end >= start && !line.contains("CDATA")) {
            line = line.left(start) + before + line.mid(start, end - start) + after + line.mid(end);
        }
        changed += line + '\n';
    }
    return changed;
}

void addEncodings(QList<Document> &variants, const QByteArray &document)
{
    variants << Document{"as written", document}
             << Document{"byte order mark", "\xEF\xBB\xBF" + document}
             << Document{"XML 1.1",
                         replaced(document, "<?xml version=\"1.0\"", "<?xml version=\"1.1\"")}
             << Document{"no declaration", document.mid(int(sizeof kDeclaration) - 1)}
             << Document{"CR LF", replaced(document, "\n", "\r\n")}
             << Document{"CR", replaced(document, "\n", "\r")}
             << Document{"UTF-16 LE", utf16(document, false)}
             << Document{"UTF-16 BE", utf16(document, true)}
             << Document{"Latin-1", replaced(declared(document, "ISO-8859-1"), kHiragana, "\xE9")}
             << Document{"Shift_JIS",
                         replaced(declared(document, "Shift_JIS"), kHiragana, "\x82\xA0")}
             << Document{"EUC-JP", replaced(declared(document, "EUC-JP"), kHiragana, "\xA4\xA2")}
             << Document{"UTF-8 called Latin-1", declared(document, "ISO-8859-1")}
             << Document{"UTF-8 called UTF-16", declared(document, "UTF-16")}
             << Document{"unknown encoding", declared(document, "no-such-thing")}
             << Document{"Shift_JIS called UTF-8", replaced(document, kHiragana, "\x82\xA0")};
}

void addForeign(QList<Document> &variants, const QByteArray &document)
{
    variants << Document{"empty", ""} << Document{"blanks", " \n\t"}
             << Document{"text", "no document\n"}
             << Document{"another root", "<other><thing id=\"000\">x</thing></other>"}
             << Document{"empty root", "<a/>"} << Document{"two roots", "<a/><b/>"}
             << Document{"root in a namespace",
                         replaced(document, "docInfo", "xmlns=\"urn:x\" docInfo")}
             << Document{"no docInfo", replaced(document, " docInfo=\"1.0\"", "")}
             << Document{"other docInfo", replaced(document, "docInfo=\"1.0\"", "docInfo=\"1.1\"")}
             << Document{"comments", replaced(document, "\n    <", "\n<!-- <x> -->    <")}
             << Document{"instructions", replaced(document, "\n    <", "\n<?x y?>    <")}
             << Document{"unknown entity", withTexts(document, "&nbsp;", "")}
             << Document{"foreign first", inRoot(document, "<foreign a=\"1\"><x>y</x></foreign>\n")}
             << Document{"text in the root", inRoot(document, "some text &lt; ")}
             << Document{"deep", deep(document)};
}

void addDocumentTypes(QList<Document> &variants, const QByteArray &document)
{
    const QByteArray entity = withType(document, "<!ENTITY e 'E'>");
    const QByteArray largeEntity = "<!ENTITY e '" + QByteArray(1500, 'e') + "'>";
    const QByteArray entities = "<!ENTITY a 'aaaaaaaaaaaaaaaa'>"
                                "<!ENTITY b '&a;&a;&a;&a;&a;&a;&a;&a;'>"
                                "<!ENTITY c '&b;&b;&b;&b;&b;&b;&b;&b;'>"
                                "<!ENTITY d '&c;&c;&c;&c;&c;&c;&c;&c;'>";
    const QByteArray attribute = "<!ATTLIST " + rootOf(document) + " a CDATA '";
    variants << Document{"document type", inProlog(document, "<!DOCTYPE x>\n")}
             << Document{"entity", withTexts(entity, "&e;", "")}
             << Document{"entity in an attribute", replaced(entity, "docInfo=\"", "docInfo=\"&e;")}
             << Document{"external entity",
                         withTexts(withType(document, "<!ENTITY e SYSTEM 'cookie.ini'>"), "&e;",
                                   "")}
             << Document{"entity of itself",
                         withTexts(withType(document, "<!ENTITY e '&e;'>"), "&e;", "")}
             << Document{"large entity", withTexts(withType(document, largeEntity), "&e;", "")}
             << Document{"entity of entities", withTexts(withType(document, entities), "&d;", "")}
             << Document{"parameter entity", withType(document, "<!ENTITY % p ''> %p;")}
             << Document{"attribute by default", withType(document, attribute + "A'>")}
             << Document{"long attribute by default",
                         withType(document, attribute + QByteArray(5000, 'A') + "'>")};
}

void addTexts(QList<Document> &variants, const QByteArray &document)
{
    variants << Document{"texts in CDATA", withTexts(document, "<![CDATA[", "]]>")}
             << Document{"texts before CDATA", withTexts(document, "", "<![CDATA[ & more ]]>")}
             << Document{"texts behind CDATA", withTexts(document, "<![CDATA[ & before ]]>", "")}
             << Document{"texts behind a child", withTexts(document, "<child>inner</child>", "")}
             << Document{"texts behind a comment", withTexts(document, "<!-- c -->", "")}
             << Document{"texts in blanks", withTexts(document, " \n\t", "\n ")}
             << Document{"texts with references",
                         withTexts(document, "&#x3042;&#233;&amp;", "&#x1F600;&quot;")}
             << Document{"U+FFFD in texts", withTexts(document, "\xEF\xBF\xBD", "")}
             << Document{"long texts", withTexts(document, QByteArray(300, 'l').constData(), "")};
}

void addNumbers(QList<Document> &variants, const QByteArray &document)
{
    static const char *const values[] = {"",
                                         " 1",
                                         "1 ",
                                         "+1",
                                         "-1",
                                         "1.0",
                                         "0x",
                                         "abc",
                                         "999999999",
                                         "001",
                                         "99999999999999999999",
                                         "\xEF\xBC\x91",
                                         "\xE2\x88\x92"
                                         "1"};
    if (!document.contains(" id=\"000\"")) {
        return;
    }
    for (const char *const value : values) {
        variants << Document{"number '" + QByteArray(value) + "'",
                             replaced(document, "id=\"000\"", "id=\"" + QByteArray(value) + '"')};
    }
    variants << Document{"no numbers", replaced(document, " id=\"000\"", "")}
             << Document{"another attribute",
                         replaced(document, " id=\"000\"", " a=\"&#10;&quot;\" id=\"000\"")};
}

// Each line on its own, which is mostly an element: gone, and there twice.
void addLines(QList<Document> &variants, const QByteArray &document)
{
    const QList<QByteArray> lines = document.split('\n');
    for (int i = 2; i < lines.size() - 2; ++i) {
        if (!lines.at(i).startsWith("        ")) {
            continue;
        }
        const QByteArray place = QByteArray::number(i + 1);
        const QByteArray line = lines.at(i) + '\n';
        const int position = int(document.indexOf(line));
        variants << Document{"without line " + place,
                             document.left(position) + document.mid(position + int(line.size()))}
                 << Document{"line " + place + " twice", inserted(document, position, line)};
    }
}

void addDamages(QList<Document> &variants, const QByteArray &document)
{
    const QByteArray late = padded(document);
    variants << Document{"wrong byte early", inRoot(document, "\xFF")}
             << Document{"wrong byte late", inserted(late, bodyEnd(late), "\xFF")}
             << Document{"overlong character", inRoot(document, "\xC0\xAF")}
             << Document{"half of a pair", inRoot(document, "\xED\xA0\x80")}
             << Document{"control character", inserted(document, bodyEnd(document), "\x01")}
             << Document{"control character in a reference",
                         inserted(document, bodyEnd(document), "&#1;")}
             << Document{"control character in an attribute",
                         replaced(document, "docInfo=\"", "docInfo=\"\x01")}
             << Document{"control character's reference in an attribute",
                         replaced(document, "docInfo=\"", "docInfo=\"&#1;")}
             << Document{"bare ampersand", inserted(document, bodyEnd(document), "a & b")}
             << Document{"open tag", inserted(document, bodyEnd(document), "<open>")}
             << Document{"foreign end", inserted(document, bodyEnd(document), "</foreign>")}
             << Document{"attribute twice", replaced(document, "docInfo", "docInfo=\"\" docInfo")}
             << Document{"attribute unquoted", replaced(document, "\"1.0\">", "1.0>")};
    for (int cut = 1; cut < kCuts; ++cut) {
        const int size = int(document.size()) * cut / kCuts;
        variants << Document{"cut at " + QByteArray::number(size), document.left(size)};
    }
}
} // namespace

QList<Document> variantsOf(const QByteArray &document)
{
    QList<Document> variants;
    addEncodings(variants, document);
    addForeign(variants, document);
    addDocumentTypes(variants, document);
    addTexts(variants, document);
    addNumbers(variants, document);
    addLines(variants, document);
    addDamages(variants, document);
    return variants;
}
