#include "tests/identical/Script.h"

#include "bookmarks/VLMC_HistorySetting.h"
#include "core/QEXC_TextCodec.h"
#include "core/VLMC_OlpUrl.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLSetting.h"
#include "fonts/VLMC_FontListSetting.h"
#include "preferences/VLMC_BrowserCommonSetting.h"

#include <QtCore/QUrl>

namespace
{
const int kMax = 20;

VLMC_FontListSetting &fonts() { return *VLMC_FontListSetting::getInstance(); }

// Halves of pairs and non-characters: Qt 4.8 encodes the former as nothing and the latter as "?",
// later versions the former as "?" and the latter as they are.
void playBytesOfUtf8()
{
    const Part part("Bytes of UTF-8 that a text without a UTF-8 form counts");
    VLMC_BrowserCommonSetting common;
    VLMC_HistorySetting history;
    QString folder = newFolder();
    common.loadSetting(&folder);
    const ushort units[] = {0xD800, 0xDFFF, 0xFDD0, 0xFFFE, 0xFFFF};
    for (const ushort unit : units) {
        const QString text = utf8("odd") + QChar(unit);
        line("text", text);
        line("port of five bytes", common.setProxyHttpPortStr(text));
        line("port of six bytes", common.setProxyHttpPortStr(text + QLatin1Char('!')));
        for (int bytes = 3; bytes < 7; ++bytes) {
            line("clipped", history.ClipString(text, bytes));
        }
    }
    showLog();
}

// The days that the Gregorian calendar left out: no day to Qt 4.8, which has the Julian calendar
// before them, days like others to later versions.
void playCalendar()
{
    const Part part("Days between the calendars");
    VLMC_HistorySetting history;
    QString folder = newFolder();
    writeFile(folder + utf8("visit.xml"),
              "<history><pageInfo><dateTime>1582/10/10 00:00</dateTime></pageInfo></history>");
    history.loadHistory(&folder, kMax);
    history.saveHistory(&folder, kMax);
    showFolder(folder);
    showLog();
}

// A caller's time in the hour that the clock skips: Qt 4.8 takes it as it is, later versions call
// it invalid.
void playSkippedTime()
{
    setZone(kSummerTime);
    {
        const Part part("Visit at a time that the clock skips");
        VLMC_HistorySetting history;
        QString folder = newFolder();
        history.loadHistory(&folder, kMax);
        VLMS_History visit = {utf8("a"), utf8("b"), QDateTime(QDate(2026, 3, 29), QTime(2, 30))};
        history.setHistory(&visit);
        history.saveHistory(&folder, kMax);
        showFolder(folder);
        showLog();
    }
    setZone(kWorldTime);
}

void playDocument(const Document &document)
{
    const Part part(document.name);
    const QString folder = newFolder();
    writeFile(folder + utf8("fontlist.xml"), document.bytes);
    fonts().loadFontList(folder);
    for (int index = 0; index < fonts().getCount(); ++index) {
        line("font", fonts().getFont(index));
    }
    showLog();
}

QByteArray fontList(const QByteArray &declaration, const QByteArray &name)
{
    return declaration + "<fontlist><font>" + name + "</font><font>next</font></fontlist>";
}

void playDocumentsThatDiffer()
{
    const char declaration[] = "<?xml version=\"1.0\" encoding=\"";
    const QByteArray windows = QByteArray(declaration) + "Windows-31J\"?>";
    const QByteArray ascii = QByteArray(declaration) + "US-ASCII\"?>";
    // Unknown to Qt 4.8.
    playDocument({"Encoding called Windows-31J", fontList(windows, "\x82\xA0")});
    playDocument({"Encoding called US-ASCII", fontList(ascii, "a")});
    // Qt 4.8 skips it.
    playDocument({"Zero byte in a text", fontList("", QByteArray("a\0b", 3))});
    // Qt 4.8 takes it for damage.
    playDocument({"Non-character in a text", fontList("", "a\xEF\xB7\x90z")});
    playDocument({"U+FFFE in a text", fontList("", "a\xEF\xBF\xBEz")});
    // Where Qt 4.8 has U+301C and its like, later versions have the full-width forms; the rows of
    // NEC and IBM are known to later versions alone.
    const QByteArray sjis = QByteArray(declaration) + "Shift_JIS\"?>";
    playDocument(
        {"Shift_JIS, vendors' characters",
         fontList(sjis, "\x81\x60 \x81\x61 \x81\x91 \x81\xCA \x87\x40 \xED\x40 \xFA\x5C")});
}

// As above, where a name is looked up.
void playShiftJis()
{
    const char *const rows[] = {"\x80", "\x81", "\x87", "\xED", "\xF0", "\xFA"};
    for (const char *const row : rows) {
        const Part part("Shift_JIS names, row " + QByteArray(row));
        for (int trail = 0x40; trail <= 0xFC; trail += 21) {
            const QByteArray bytes = row + QByteArray(1, char(trail));
            line(shown(trail) + ' ' + shown(QEXC_TextCodec::fromSJIS(bytes.constData())));
        }
    }
}

// Qt 4.8 keeps a host as it is written, later versions make an address of what stands for one.
void playHosts()
{
    const Part part("Other ways to write a local host");
    const char *const urls[] = {"http://127.1/",
                                "http://2130706433/",
                                "http://0x7f.0.0.1/",
                                "http://127.000.000.001/",
                                "http://local%68ost/",
                                "http://127.0.0.1./",
                                "http://localhost./",
                                "localhost:80/x",
                                "http://\xEF\xBC\x91\xEF\xBC\x92\xEF\xBC\x97.0.0.1/"};
    for (const char *const text : urls) {
        line(shown(QByteArray(text)) + ' '
             + shown(VLMC_OlpUrl::IsOlpContents(QUrl(utf8(text)), 0, nullptr, nullptr)));
    }
}

// Qt 4.8 refuses a cookie with an attribute that it cannot read, and quotes or encodes what does
// not belong into a header; later versions are lenient, and write what they were given.
void playCookiesThatDiffer()
{
    const char *const forms[] = {"a=b; SameSite=Lax; path=/",
                                 "a=b; expires=never; path=/",
                                 "a=b; expires=; path=/",
                                 "a=b; expires=0; path=/",
                                 "a=b; max-age=x; path=/",
                                 "a={\"k\":1}; path=/",
                                 "a=\"quoted; value\"; path=/",
                                 "a=b; path=x",
                                 "a=b; path=\"/q\"",
                                 "a=b; path=/a b",
                                 "a=b; path=/a%20b",
                                 "a=b; path=/\xE3\x81\x82",
                                 "a=b; domain=.",
                                 "a=b; domain=\xE3\x81\x82.example.com"};
    for (const char *const form : forms) {
        playRawForm(form);
    }
    const char *const elements[] = {"<contents>v;w</contents>",
                                    "<contents>{\"k\":1}</contents>",
                                    "<path>/a b;c</path>",
                                    "<website>::1</website>",
                                    "<expires>0099/01/02 03:04:05</expires>",
                                    "<expires>1582/10/10 00:00:00</expires>"};
    for (const char *const element : elements) {
        playCookieEntry(element);
    }
}

// Blanks outside ASCII around a number are skipped up to Qt 5.15.
void playNumbers()
{
    const Part part("Numbers in blanks");
    VLMC_XMLSetting store;
    QString id = utf8("id");
    store.createXMLRootNode();
    const QString values[] = {QChar(0x00A0) + utf8("1"), utf8("1") + QChar(0x3000)};
    for (const QString &value : values) {
        QXmlStreamAttributes number;
        number.append(id, value);
        char plain = 0;
        store.addXMLChild(store.getXMLRootNode(), id, id, plain, number, 0);
        line(shown(value) + ' '
             + shown(store.getXMLRootNode()->getXMLNodeChildByID(1, id) != nullptr));
        store.deleteAllSetting();
    }
    showLog();
}
} // namespace

void playDifferences()
{
    playBytesOfUtf8();
    playCalendar();
    playSkippedTime();
    playDocumentsThatDiffer();
    playShiftJis();
    playHosts();
    playCookiesThatDiffer();
}

void playForeign()
{
    playNumbers();
    // Letter case counts for Qt 4.8 on embedded Linux and for later versions, not for Qt 4.8 with
    // X11.
    playCookieIni("[cookie]\ncookies=@ByteArray(\\0\\0\\0\\x1\\0\\0\\0\\x3\\x61=b)\n");
    playCookieIni("[Cookie]\nCookies=@ByteArray(\\0\\0\\0\\x1\\0\\0\\0\\x3\\x61=b)\n");
    // Unknown to Qt 4.8.
    playCookieIni("\xEF\xBB\xBF[Cookie]\n"
                  "cookies=@ByteArray(\\0\\0\\0\\x1\\0\\0\\0\\x3\\x61=b)\n");
    // Kept up to Qt 5.15, lost to Qt 6.4.
    playCookieIni("[Cookie]\ncookies=@ByteArray(\\0\\0\\0\\x1\\0\\0\\0\\x3\\x61=\xE3)\n");
}
