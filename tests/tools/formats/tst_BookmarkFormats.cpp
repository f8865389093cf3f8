// Bookmarks as other programs write them: what is read of them, what is lost, and what comes back
// of what was written. samples/ imitates the files of several browsers; beside each stands what is
// to be found in it.

#include "tests/support/Files.h"
#include "tools/velmora-profile/formats/Formats.h"

#include <QtCore/QDir>
#include <QtTest/QtTest>

using namespace profile;

class tst_BookmarkFormats : public QObject
{
    Q_OBJECT

private slots:
    void readBookmarks_findsWhatBrowsersWrite_data();
    void readBookmarks_findsWhatBrowsersWrite();
    void write_carriesEveryCharacter_data();
    void write_carriesEveryCharacter();
    void write_losesWhatNoFileCarries_data();
    void write_losesWhatNoFileCarries();
    void write_isTheDocument_data();
    void write_isTheDocument();
    void readBookmarks_readsEncodings_data();
    void readBookmarks_readsEncodings();
    void readBookmarks_losesBytes_data();
    void readBookmarks_losesBytes();
    void readBookmarks_listsLosses_data();
    void readBookmarks_listsLosses();
    void readBookmarks_refuses_data();
    void readBookmarks_refuses();
    void readBookmarks_tellsFormatsByContent_data();
    void readBookmarks_tellsFormatsByContent();
    void readBookmarks_takes100000Bookmarks_data();
    void readBookmarks_takes100000Bookmarks();
    void readBookmarks_takes100000Losses_data();
    void readBookmarks_takes100000Losses();
    void readBookmarks_takes256Folders_data();
    void readBookmarks_takes256Folders();
    void readBookmarks_namesLongTextsByTheirBeginning();
    void readBookmarks_survivesTruncation_data();
    void readBookmarks_survivesTruncation();
};

namespace
{
const int kEntries = 10000;

QByteArray described(const BookmarkImport &import)
{
    QByteArray lines = (import.error.isEmpty() ? import.format : import.error).toUtf8() + '\n';
    for (const BookmarkRecord &bookmark : import.bookmarks) {
        const QStringList parts = QStringList({bookmark.title, bookmark.url}) + bookmark.folders;
        lines += "bookmark: " + parts.join(utf8(" | ")).toUtf8() + '\n';
    }
    for (const Loss &loss : import.losses) {
        lines += "lost: " + loss.entry.toUtf8() + ": " + loss.reason.toUtf8() + '\n';
    }
    return lines;
}

QByteArray page(const QByteArray &content)
{
    return "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<META HTTP-EQUIV=\"Content-Type\" "
           "CONTENT=\"text/html; charset=UTF-8\">\n<DL><p>\n"
           + content + "</DL><p>\n";
}

QByteArray link(const QByteArray &title, const QByteArray &url = "u")
{
    return "<DT><A HREF=\"" + url + "\">" + title + "</A>\n";
}

QByteArray xbel(const QByteArray &content)
{
    return "<?xml version=\"1.0\"?><!DOCTYPE xbel><xbel>" + content + "</xbel>";
}

QByteArray written(const QByteArray &format, const QList<BookmarkRecord> &bookmarks,
                   QList<Loss> *losses)
{
    return format == "xbel" ? writeXbel(bookmarks, losses)
                            : writeNetscapeBookmarks(bookmarks, losses);
}

void addFormats()
{
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("netscape") << QByteArray("netscape");
    QTest::newRow("xbel") << QByteArray("xbel");
}

bool isCarried(char32_t code)
{
    const bool isControl = code < 0x20;
    const bool isSurrogate = code >= 0xd800 && code < 0xe000;
    return !isControl && !isSurrogate && code != 0xfffe && code != 0xffff;
}

// All characters that there are, in as many entries; between marks, so that blanks stand inside.
QList<BookmarkRecord> allCharacters()
{
    QList<BookmarkRecord> bookmarks;
    const int each = 0x110000 / kEntries + 1;
    for (int i = 0; i < kEntries; ++i) {
        QString all = utf8("x");
        for (int code = i * each; code < (i + 1) * each && code < 0x110000; ++code) {
            const char32_t character = char32_t(code);
            all += isCarried(character) ? QString::fromUcs4(&character, 1) : QString();
        }
        all += utf8("x");
        bookmarks.append({all, utf8("http://x/?") + QString::number(i) + all, QStringList()});
    }
    return bookmarks;
}

QByteArray utf16(const QString &text, bool isLittleEndian)
{
    QByteArray bytes;
    for (const QChar unit : text) {
        const char low = char(unit.unicode() & 0xff);
        const char high = char(unit.unicode() >> 8);
        bytes += isLittleEndian ? low : high;
        bytes += isLittleEndian ? high : low;
    }
    return bytes;
}

QByteArray repeated(const QByteArray &piece, int count) { return piece.repeated(count); }
} // namespace

void tst_BookmarkFormats::readBookmarks_findsWhatBrowsersWrite_data()
{
    QTest::addColumn<QString>("file");
    const QStringList files =
        QDir(utf8(SAMPLES)).entryList({utf8("*.html"), utf8("*.xbel")}, QDir::Files, QDir::Name);
    QVERIFY(files.size() >= 7);
    for (const QString &file : files) {
        QTest::newRow(file.toUtf8().constData()) << utf8(SAMPLES) + QLatin1Char('/') + file;
    }
}

void tst_BookmarkFormats::readBookmarks_findsWhatBrowsersWrite()
{
    QFETCH(QString, file);
    const QString expected = file.section(QLatin1Char('.'), 0, -2) + utf8(".expected");
    COMPARE_BYTES(described(readBookmarks(readFile(file))), readFile(expected));
}

void tst_BookmarkFormats::write_carriesEveryCharacter_data() { addFormats(); }

void tst_BookmarkFormats::write_carriesEveryCharacter()
{
    QFETCH(QByteArray, format);
    const QList<BookmarkRecord> bookmarks = allCharacters();
    QList<Loss> losses;
    const BookmarkImport import = readBookmarks(written(format, bookmarks, &losses));
    QCOMPARE(losses.size(), 0);
    QCOMPARE(import.losses.size(), 0);
    QCOMPARE(import.bookmarks.size(), kEntries);
    for (int i = 0; i < kEntries; ++i) {
        QCOMPARE(import.bookmarks.at(i).title, bookmarks.at(i).title);
        QCOMPARE(import.bookmarks.at(i).url, bookmarks.at(i).url);
    }
}

void tst_BookmarkFormats::write_losesWhatNoFileCarries_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("kept");
    QTest::newRow("control") << utf8("a\x01z") << utf8("az");
    QTest::newRow("escape") << utf8("a\x1bz") << utf8("az");
    QTest::newRow("vertical tab") << utf8("a\vz") << utf8("az");
    QTest::newRow("line end") << utf8("a\nz") << utf8("a z");
    QTest::newRow("two blanks") << utf8("a  z") << utf8("a z");
    QTest::newRow("tab") << utf8("a\tz") << utf8("a z");
    QTest::newRow("return") << utf8("a\rz") << utf8("a z");
    QTest::newRow("form feed") << utf8("a\fz") << utf8("a z");
    QTest::newRow("blank first") << utf8(" az") << utf8("az");
    QTest::newRow("blank last") << utf8("az ") << utf8("az");
    const QChar high(0xd83d);
    const QChar low(0xde00);
    QTest::newRow("half a pair") << utf8("a") + high + utf8("z") << utf8("az");
    QTest::newRow("half a pair first") << low + utf8("az") << utf8("az");
    QTest::newRow("half a pair last") << utf8("az") + high << utf8("az");
    QTest::newRow("other half") << utf8("a") + low + utf8("z") << utf8("az");
    QTest::newRow("U+FFFE") << utf8("a") + QChar(0xfffe) + utf8("z") << utf8("az");
    QTest::newRow("U+FFFF") << utf8("a") + QChar(0xffff) + utf8("z") << utf8("az");
}

void tst_BookmarkFormats::write_losesWhatNoFileCarries()
{
    QFETCH(QString, title);
    QFETCH(QString, kept);
    for (const char *const format : {"netscape", "xbel"}) {
        QList<Loss> losses;
        const BookmarkImport import = readBookmarks(
            written(format, {{title, utf8("u"), {}}, {utf8("t"), title, {}}}, &losses));
        QCOMPARE(losses.size(), 2);
        QCOMPARE(losses.at(0).entry, title);
        QCOMPARE(losses.at(1).entry, utf8("t"));
        QCOMPARE(losses.at(0).reason, utf8("blanks or characters that the file cannot hold"));
        QCOMPARE(import.bookmarks.size(), 2);
        QCOMPARE(import.bookmarks.at(0).title, kept);
        QCOMPARE(import.bookmarks.at(1).url, kept);
        QCOMPARE(import.losses.size(), 0);
    }
}

void tst_BookmarkFormats::write_isTheDocument_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QByteArray>("document");
    QTest::newRow("netscape") << QByteArray("netscape")
                              << QByteArray(
                                     "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n"
                                     "<META HTTP-EQUIV=\"Content-Type\" "
                                     "CONTENT=\"text/html; charset=UTF-8\">\n"
                                     "<TITLE>Bookmarks</TITLE>\n<H1>Bookmarks</H1>\n<DL><p>\n"
                                     "    <DT><A HREF=\"http://a/?x=1&amp;y=&quot;\">A "
                                     "&lt;b&gt;</A>\n"
                                     "    <DT><A HREF=\"u\"></A>\n"
                                     "</DL><p>\n");
    QTest::newRow("xbel")
        << QByteArray("xbel")
        << QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<!DOCTYPE xbel PUBLIC \"+//IDN python.org//DTD XML Bookmark Exchange "
                      "Language 1.0//EN//XML\" "
                      "\"http://pyxml.sourceforge.net/topics/dtds/xbel-1.0.dtd\">\n"
                      "<xbel version=\"1.0\">\n"
                      "    <bookmark href=\"http://a/?x=1&amp;y=&quot;\">\n"
                      "        <title>A &lt;b&gt;</title>\n    </bookmark>\n"
                      "    <bookmark href=\"u\">\n        <title></title>\n    </bookmark>\n"
                      "</xbel>\n");
}

void tst_BookmarkFormats::write_isTheDocument()
{
    QFETCH(QByteArray, format);
    QFETCH(QByteArray, document);
    QList<Loss> losses;
    COMPARE_BYTES(written(format,
                          {{utf8("A <b>"), utf8("http://a/?x=1&y=\""), {}},
                           {QString(), utf8("u"), {utf8("folder")}}},
                          &losses),
                  document);
}

void tst_BookmarkFormats::readBookmarks_readsEncodings_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QByteArray>("losses");
    const QString japanese = utf8("日本語ｶﾅ①");
    const QByteArray shiftJis = "\x93\xfa\x96\x7b\x8c\xea\xb6\xc5\x87\x40";
    const QByteArray eucJp = "\xc6\xfc\xcb\xdc\xb8\xec\x8e\xb6\x8e\xc5\xad\xa1";
    const QByteArray head = "<!DOCTYPE NETSCAPE-Bookmark-file-1>";
    const auto meta = [](const char *name) {
        return "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=" + QByteArray(name)
               + "\">";
    };
    const QByteArray guessed = "lost: the page: it names no encoding and was read as ";
    QTest::newRow("UTF-8") << head + meta("UTF-8") + link(japanese.toUtf8()) << japanese
                           << QByteArray();
    QTest::newRow("utf8") << head + meta("utf8") + link(japanese.toUtf8()) << japanese
                          << QByteArray();
    QTest::newRow("UTF-8 without a name")
        << head + link(japanese.toUtf8()) << japanese << QByteArray();
    QTest::newRow("UTF-8 with a mark and a wrong name")
        << "\xef\xbb\xbf" + head + meta("Shift_JIS") + link(japanese.toUtf8()) << japanese
        << QByteArray();
    for (const char *const name : {"Shift_JIS", "shift-jis", "x-sjis", "SJIS", "Windows-31J",
                                   "MS_Kanji", "ms932", "csShiftJIS"}) {
        QTest::newRow(name) << head + meta(name) + link(shiftJis) << japanese << QByteArray();
    }
    QTest::newRow("Shift_JIS without a name")
        << head + link(shiftJis) << japanese << guessed + "shift_jis\n";
    for (const char *const name : {"EUC-JP", "x-euc-jp", "eucJP", "csEUCPkdFmtJapanese"}) {
        QTest::newRow(name) << head + meta(name) + link(eucJp) << japanese << QByteArray();
    }
    QTest::newRow("EUC-JP without a name")
        << head + link(eucJp) << japanese << guessed + "euc-jp\n";
    QTest::newRow("kana in EUC-JP without a name")
        << head + link("\xa4\xa2\xa4\xa4") << utf8("あい") << guessed + "euc-jp\n";
    const QString western = utf8("caf\xc3\xa9 \xe2\x82\xac");
    for (const char *const name : {"windows-1252", "ISO-8859-1", "latin1", "us-ascii"}) {
        QTest::newRow(name) << head + meta(name) + link("caf\xe9 \x80") << western << QByteArray();
    }
    QTest::newRow("windows-1252 without a name")
        << head + link("caf\xe9 \x80") << western << guessed + "windows-1252\n";
    QTest::newRow("ISO-2022-JP") << head + meta("ISO-2022-JP") + link("\x1b$BF|K\\\x1b(B")
                                 << utf8("日本") << QByteArray();
    QTest::newRow("UTF-16 in name alone")
        << head + meta("UTF-16") + link(japanese.toUtf8()) << japanese << QByteArray();
    QTest::newRow("UCS-2 in name alone")
        << head + meta("ucs-2") + link(japanese.toUtf8()) << japanese << QByteArray();
    QTest::newRow("short meta") << head + "<meta charset=Shift_JIS>" + link(shiftJis) << japanese
                                << QByteArray();
    QTest::newRow("quoted meta") << head + "<meta charset='euc-jp' />" + link(eucJp) << japanese
                                 << QByteArray();
    QTest::newRow("second meta") << head + "<meta name=charset-free><meta charset=\"euc-jp\">"
                                        + link(eucJp)
                                 << japanese << QByteArray();
    // The last character is one that could combine with a next one.
    QTest::newRow("windows-1258") << head + meta("windows-1258") + "<DT><A HREF=\"u\">Vi\xea"
                                  << utf8("Vi\xc3\xaa") << QByteArray();
    const QString plain = QString::fromUtf8(head + link(japanese.toUtf8()));
    QTest::newRow("UTF-16LE") << "\xff\xfe" + utf16(plain, true) << japanese << QByteArray();
    QTest::newRow("UTF-16BE") << "\xfe\xff" + utf16(plain, false) << japanese << QByteArray();
    const QByteArray xbelHead = "<?xml version=\"1.0\" encoding=\"";
    const auto document = [&xbelHead](const char *name, const QByteArray &title) {
        return xbelHead + name + "\"?><xbel><bookmark href=\"u\"><title>" + title
               + "</title></bookmark></xbel>";
    };
    QTest::newRow("XBEL in UTF-8")
        << document("UTF-8", japanese.toUtf8()) << japanese << QByteArray();
    QTest::newRow("XBEL in Shift_JIS")
        << document("Shift_JIS", shiftJis) << japanese << QByteArray();
    QTest::newRow("XBEL in EUC-JP") << document("EUC-JP", eucJp) << japanese << QByteArray();
    QTest::newRow("XBEL with a mark")
        << "\xef\xbb\xbf" + document("UTF-8", japanese.toUtf8()) << japanese << QByteArray();
}

void tst_BookmarkFormats::readBookmarks_readsEncodings()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, title);
    QFETCH(QByteArray, losses);
    const BookmarkImport import = readBookmarks(content);
    COMPARE_BYTES(described(import),
                  import.format.toUtf8() + "\nbookmark: " + title.toUtf8() + " | u\n" + losses);
}

void tst_BookmarkFormats::readBookmarks_losesBytes_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray found = "Netscape HTML\nbookmark: ";
    QTest::newRow("no UTF-8") << page(link("a\xff\xc3z"))
                              << found
                                     + "a\xef\xbf\xbd\xef\xbf\xbdz | u\n"
                                       "lost: the page: 2 of its bytes are not utf-8\n";
    QTest::newRow("no Shift_JIS") << "<DL><meta charset=shift_jis>" + link("a\xff z\xb1")
                                  << found
                                         + "a\xef\xbf\xbd z\xef\xbd\xb1 | u\n"
                                           "lost: the page: 1 of its bytes are not shift_jis\n";
    QTest::newRow("NUL") << page(link("a" + QByteArray(1, '\0') + "z")
                                 + link("b", QByteArray(2, '\0') + "v"))
                         << found
                                + "a\xef\xbf\xbdz | u\nbookmark: b | \xef\xbf\xbd\xef\xbf\xbdv\n"
                                  "lost: the page: 3 of its characters are NUL\n";
    const QByteArray wide = "\xff\xfe" + utf16(utf8("<DL><A HREF=u>a"), true);
    QTest::newRow("half a pair of UTF-16")
        << wide + QByteArray("\x00\xd8z\x00", 4)
        << found + "a\xef\xbf\xbdz | u\nlost: the page: 1 of its bytes are not utf-16le\n";
    QTest::newRow("odd UTF-16")
        << wide + 'z'
        << found + "a\xef\xbf\xbd | u\nlost: the page: 1 of its bytes are not utf-16le\n";
}

void tst_BookmarkFormats::readBookmarks_losesBytes()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, expected);
    COMPARE_BYTES(described(readBookmarks(content)), expected);
}

void tst_BookmarkFormats::readBookmarks_listsLosses_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("folder without a name")
        << page("<DT><H3></H3><DL>" + link("a") + "</DL><DT><H3> </H3><DL></DL>")
        << QByteArray("Netscape HTML\nbookmark: a | u | without a name\n"
                      "lost: without a name: a profile has no place for an empty folder\n");
    QTest::newRow("list without a heading")
        << page("<DL>" + link("a") + "</DL>") << QByteArray("Netscape HTML\nbookmark: a | u\n");
    QTest::newRow("fields of a folder without a name")
        << page("<DT><H3 ID=\"x\"></H3><DL>" + link("a") + "</DL>")
        << QByteArray("Netscape HTML\nbookmark: a | u | without a name\nlost: a folder: its id\n");
    QTest::newRow("bookmark without title and address")
        << page("<DT><A></A>")
        << QByteArray("Netscape HTML\nlost: a bookmark: it has no address\n");
    QTest::newRow("two images") << page("<DT><A HREF=\"u\"><IMG><IMG>a</A>")
                                << QByteArray("Netscape HTML\nbookmark: a | u\n"
                                              "lost: a: its image\n");
    QTest::newRow("image of a folder")
        << page("<H3><IMG SRC=\"x\">f</H3><DL>" + link("a") + "</DL>")
        << QByteArray("Netscape HTML\nbookmark: a | u | f\nlost: f: its image\n");
    QTest::newRow("title on two lines")
        << page(link("a<BR>b")) << QByteArray("Netscape HTML\nbookmark: a b | u\n");
    QTest::newRow("blank between tags")
        << page(link("<b>a</b> <i>b</i>")) << QByteArray("Netscape HTML\nbookmark: a b | u\n");
    QTest::newRow("control characters")
        << page(link("a&#1;b\x02z"))
        << QByteArray("Netscape HTML\nbookmark: abz | u\n"
                      "lost: line 4: a character that no text can hold\n"
                      "lost: line 4: a character that no text can hold\n");
    QTest::newRow("image outside")
        << page(link("a") + "<IMG SRC=\"x\">") << QByteArray("Netscape HTML\nbookmark: a | u\n");
    QTest::newRow("description of the page")
        << page("<DD>Some words" + link("a"))
        << QByteArray("Netscape HTML\nbookmark: a | u\nlost: the page: its description\n");
    QTest::newRow("script and style")
        << page("<script>var a = '<A HREF=v>';</script><style>a { }</style>" + link("a"))
        << QByteArray("Netscape HTML\nbookmark: a | u\n");
    QTest::newRow("attribute without a value, and an empty one")
        << page("<DT><A HREF=\"u\" FOLDED TAGS=\"\">a</A>")
        << QByteArray("Netscape HTML\nbookmark: a | u\nlost: a: its folded\n");
    QTest::newRow("signs that are no markup")
        << page("<DT><A HREF=\"u?a& b&&c&d=1\">a & b && c &d; <3 < e</A>")
        << QByteArray("Netscape HTML\nbookmark: a & b && c &d; <3 < e | u?a& b&&c&d=1\n");
    QTest::newRow("words in a tag")
        << page("<DT><A HREF=\"u\"more\">a</A>")
        << QByteArray("Netscape HTML\nbookmark: a | u\n"
                      "lost: line 4: markup that cannot be read\nlost: a: its more\n");
    QTest::newRow("comment without an end")
        << page(link("a") + "<!-- " + link("b"))
        << QByteArray("Netscape HTML\nbookmark: a | u\n"
                      "lost: line 7: what follows is in an unclosed comment\n");
    QTest::newRow("tag without an end")
        << "<DL>" + link("a") + "<A ID=x"
        << QByteArray("Netscape HTML\nbookmark: a | u\n"
                      "lost: line 2: what follows is in an unclosed tag\n"
                      "lost: a bookmark: it has no address\n");
    QTest::newRow("value without an end")
        << "<DL>" + link("a") + "<A ID=\"x> y"
        << QByteArray("Netscape HTML\nbookmark: a | u\n"
                      "lost: line 2: what follows is in an unclosed value\n"
                      "lost: line 2: what follows is in an unclosed tag\n"
                      "lost: a bookmark: it has no address\n");
    QTest::newRow("end tag without an end")
        << "<DL>" + link("a") + "<DT><A HREF=v>b</A <DT>"
        << QByteArray("Netscape HTML\nbookmark: a | u\nbookmark: b | v\n"
                      "lost: line 2: what follows is in an unclosed tag\n");
    QTest::newRow("heading of each size")
        << page("<H2>2</H2><DL>" + link("a") + "</DL><H4>4</H4><DL>" + link("b")
                + "</DL><H6>6</H6><DL>" + link("c") + "</DL>")
        << QByteArray("Netscape HTML\nbookmark: a | u | 2\nbookmark: b | u | 4\n"
                      "bookmark: c | u | 6\n");
    QTest::newRow("lists closed too often")
        << page("</DL></DL>" + link("a")) << QByteArray("Netscape HTML\nbookmark: a | u\n");
    QTest::newRow("folders without an end")
        << "<DL><DT><H3>e</H3><DL><DT><H3>f</H3><DL>" + link("a") + "<DT><H3>g</H3><DL>"
        << QByteArray("Netscape HTML\nbookmark: a | u | e | f\n"
                      "lost: g: a profile has no place for an empty folder\n");
    QTest::newRow("no bookmarks") << page("") << QByteArray("Netscape HTML\n");
    QTest::newRow("XBEL: element in a title")
        << xbel("<bookmark href=\"u\"><title>a<b>c</b><folder/>z</title></bookmark>")
        << QByteArray("XBEL\nbookmark: az | u\nlost: az: its b, folder\n");
    QTest::newRow("XBEL: bookmark in a title")
        << xbel("<bookmark href=\"u\"><title>a<bookmark href=\"v\"/></title></bookmark>")
        << QByteArray("XBEL\nbookmark: a | u\nlost: a: its bookmark\n");
    QTest::newRow("XBEL: two titles and an element twice")
        << xbel("<bookmark href=\"u\"><title>a</title><title>b</title><x/><x/></bookmark>")
        << QByteArray("XBEL\nbookmark: a | u\nlost: a: its title, x\n");
    QTest::newRow("XBEL: text outside")
        << xbel("words <bookmark href=\"u\">more<title>a</title></bookmark>")
        << QByteArray("XBEL\nbookmark: a | u\n"
                      "lost: words: it is text outside all titles\n"
                      "lost: more: it is text outside all titles\n");
    QTest::newRow("XBEL: folder without a name")
        << xbel("<folder id=\"x\"><title/><bookmark href=\"u\"/></folder><folder/>")
        << QByteArray("XBEL\nbookmark:  | u | without a name\nlost: a folder: its id\n"
                      "lost: without a name: a profile has no place for an empty folder\n");
    QTest::newRow("XBEL: prefix that nothing declares")
        << QByteArray("<xbel x:a=\"b\"><bookmark href=\"u\"><x:icon/></bookmark></xbel>")
        << QByteArray("XBEL\nbookmark:  | u\nlost: u: its x:icon\n");
    QTest::newRow("XBEL: entity in what is passed over")
        << QByteArray("<!DOCTYPE xbel PUBLIC \"x\" \"y\"><xbel><desc>a&nbsp;b</desc></xbel>")
        << QByteArray("XBEL\nlost: the file: its description\n");
    QTest::newRow("XBEL: entity of its own")
        << QByteArray("<!DOCTYPE xbel [<!ENTITY x \"xyz\">]><xbel><bookmark href=\"u\">"
                      "<title>&x;</title></bookmark></xbel>")
        << QByteArray("XBEL\nbookmark: xyz | u\n");
    QTest::newRow("XBEL: entity of another file")
        << QByteArray("<!DOCTYPE xbel [<!ENTITY x SYSTEM \"y\">]><xbel><bookmark href=\"u\">"
                      "<title>a&x;z</title></bookmark></xbel>")
        << QByteArray("XBEL\nbookmark: az | u\n"
                      "lost: x: this entity stands for another file, which is not read\n");
    QTest::newRow("XBEL: deep in what is passed over")
        << xbel("<info><bookmark href=\"v\"><title>no</title></bookmark>words</info>"
                "<bookmark href=\"u\"/>")
        << QByteArray("XBEL\nbookmark:  | u\nlost: the file: its info\n");
}

void tst_BookmarkFormats::readBookmarks_listsLosses()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, expected);
    COMPARE_BYTES(described(readBookmarks(content)), expected);
}

void tst_BookmarkFormats::readBookmarks_refuses_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("error");
    const QString other = utf8("it holds neither Netscape HTML nor XBEL bookmarks");
    QTest::newRow("nothing") << QByteArray() << other;
    QTest::newRow("text") << QByteArray("just a text") << other;
    QTest::newRow("HTML without a list") << QByteArray("<p><a href=\"u\">a</a>") << other;
    QTest::newRow("HTML without an address") << QByteArray("<dl><a>a</a></dl>") << other;
    QTest::newRow("XML of another kind") << QByteArray("<?xml version=\"1.0\"?><rss/>") << other;
    QTest::newRow("root of another namespace's prefix")
        << QByteArray("<x:xbel xmlns:x=\"y\"/>") << other;
    QTest::newRow("zeros") << QByteArray(1000, '\0') << other;
    QTest::newRow("unknown encoding of a page")
        << QByteArray("<dl><meta charset=no-such><a href=u>")
        << utf8("its encoding 'no-such' is unknown");
    QTest::newRow("longest name of an encoding")
        << "<dl><meta charset=" + QByteArray(3000, 'x') + "><a href=u>"
        << utf8("its encoding '") + QString(100, QLatin1Char('x'))
               + utf8("\xe2\x80\xa6' is unknown");
    QTest::newRow("unknown encoding of a document")
        << QByteArray("<?xml version=\"1.0\" encoding=\"no-such\"?><xbel/>")
        << utf8("its encoding 'no-such' is unknown");
    QTest::newRow("XBEL with other bytes")
        << xbel("<bookmark href=\"u\"><title>\xff</title></bookmark>")
        << utf8("it is damaged: it holds bytes that are not utf-8");
    QTest::newRow("XBEL that ends early") << QByteArray("<xbel>\n<folder>")
                                          << utf8("it is damaged at line 2: Premature end of "
                                                  "document.");
}

void tst_BookmarkFormats::readBookmarks_refuses()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, error);
    QCOMPARE(readBookmarks(content).error, error);
}

void tst_BookmarkFormats::readBookmarks_tellsFormatsByContent_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("format");
    QTest::newRow("type of the document alone")
        << QByteArray("<!DOCTYPE NETSCAPE-Bookmark-file-1>\n") << utf8("Netscape HTML");
    QTest::newRow("lists and links alone")
        << QByteArray("<dl><dt><a\nhref=u>a</a></dl>") << utf8("Netscape HTML");
    QTest::newRow("XBEL without a declaration") << QByteArray("<xbel/>") << utf8("XBEL");
    QTest::newRow("XBEL behind blanks and comments")
        << QByteArray("<!-- <dl><a href> -->\n<xbel/>") << utf8("XBEL");
    QTest::newRow("XBEL that speaks of the other")
        << xbel("<title>NETSCAPE-Bookmark-file-1</title>") << utf8("XBEL");
    QTest::newRow("HTML that speaks of the other")
        << page(link("&lt;xbel&gt;")) << utf8("Netscape HTML");
}

void tst_BookmarkFormats::readBookmarks_tellsFormatsByContent()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, format);
    const BookmarkImport import = readBookmarks(content);
    QCOMPARE(import.error, QString());
    QCOMPARE(import.format, format);
}

void tst_BookmarkFormats::readBookmarks_takes100000Bookmarks_data() { addFormats(); }

void tst_BookmarkFormats::readBookmarks_takes100000Bookmarks()
{
    QFETCH(QByteArray, format);
    for (const int over : {0, 1}) {
        const QByteArray content = format == "xbel"
                                       ? xbel(repeated("<bookmark href=\"u\"/>", 100000 + over))
                                       : page(repeated("<DT><A HREF=u>a</A>", 100000 + over));
        const BookmarkImport import = readBookmarks(content);
        QCOMPARE(import.error, over ? utf8("it has over 100000 bookmarks") : QString());
        QCOMPARE(import.bookmarks.size(), 100000);
    }
}

void tst_BookmarkFormats::readBookmarks_takes100000Losses_data() { addFormats(); }

void tst_BookmarkFormats::readBookmarks_takes100000Losses()
{
    QFETCH(QByteArray, format);
    for (const int over : {0, 1}) {
        const QByteArray content = format == "xbel" ? xbel(repeated("<separator/>", 100000 + over))
                                                    : page(repeated("<HR>", 100000 + over));
        const BookmarkImport import = readBookmarks(content);
        QCOMPARE(import.error,
                 over ? utf8("over 100000 parts of it have no place in a profile") : QString());
        QCOMPARE(import.losses.size(), 100000);
    }
}

void tst_BookmarkFormats::readBookmarks_takes256Folders_data() { addFormats(); }

void tst_BookmarkFormats::readBookmarks_takes256Folders()
{
    QFETCH(QByteArray, format);
    for (const int over : {0, 1}) {
        // The list of the page is one of them.
        const QByteArray content =
            format == "xbel" ? xbel(repeated("<folder><title>f</title>", 256 + over)
                                    + "<bookmark href=\"u\"/>" + repeated("</folder>", 256 + over))
                             : page(repeated("<DT><H3>f</H3><DL>", 255 + over) + link("a"));
        const BookmarkImport import = readBookmarks(content);
        QCOMPARE(import.error,
                 over ? utf8("its folders are nested more than 256 deep") : QString());
        if (!over) {
            QCOMPARE(import.bookmarks.size(), 1);
            QCOMPARE(import.bookmarks.at(0).folders.size(), format == "xbel" ? 256 : 255);
        }
    }
}

void tst_BookmarkFormats::readBookmarks_namesLongTextsByTheirBeginning()
{
    const QByteArray fits = "x" + repeated("\xc3\xa9", 99);
    const QByteArray whole = repeated("x", 99) + "\xf0\x9f\x98\x80";
    const BookmarkImport import = readBookmarks(
        page("<DT><H3>" + fits + "</H3><DL><DT><A HREF=u ID=i>" + fits + "y</A></DL><DT><H3>" + fits
             + "z</H3><DL><DT><A HREF=u ID=i>" + whole + "</A></DL>"));
    const QByteArray dots = "\xe2\x80\xa6";
    COMPARE_BYTES(described(import),
                  "Netscape HTML\nbookmark: " + fits + "y | u | " + fits + "\nbookmark: " + whole
                      + " | u | " + fits + dots + "\nlost: " + fits + dots
                      + ": its id\nlost: " + repeated("x", 99) + dots + ": its id\n");
}

void tst_BookmarkFormats::readBookmarks_survivesTruncation_data()
{
    QTest::addColumn<QString>("file");
    for (const char *const file :
         {"/open-tags.html", "/with-descriptions.html", "/with-metadata.xbel"}) {
        QTest::newRow(file) << utf8(SAMPLES) + utf8(file);
    }
}

// Whatever is left of a page is read, and nothing of a document that is not whole.
void tst_BookmarkFormats::readBookmarks_survivesTruncation()
{
    QFETCH(QString, file);
    const QByteArray content = readFile(file);
    const QByteArray end = content.trimmed();
    int most = 0;
    for (int size = 0; size < end.size(); size += 7) {
        const BookmarkImport import = readBookmarks(content.left(size));
        QVERIFY(file.endsWith(utf8("html")) || !import.error.isEmpty());
        most = qMax(most, int(import.bookmarks.size()));
        QVERIFY(!file.endsWith(utf8("html")) || import.bookmarks.size() >= most - 1);
    }
    QVERIFY(most >= 3);
}

QTEST_GUILESS_MAIN(tst_BookmarkFormats)
#include "tst_BookmarkFormats.moc"
