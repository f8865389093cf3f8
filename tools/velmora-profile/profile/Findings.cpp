#include "tools/velmora-profile/profile/Findings.h"

#include "bookmarks/HistoryElements_p.h"
#include "cookies/AuthElements_p.h"
#include "fonts/FontElements_p.h"
#include "preferences/CommonRows_p.h"
#include "text/TimeText_p.h"
#include "tools/velmora-profile/output/Text.h"
#include "tools/velmora-profile/profile/CookieFile.h"
#include "tools/velmora-profile/profile/Entry.h"
#include "tools/velmora-profile/profile/Preferences.h"
#include "tools/velmora-profile/profile/Secrets.h"
#include "tools/velmora-profile/profile/Thumbnails.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonObject>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>

namespace
{
using namespace profile;

// The library's own, and those of Qt beside the files that it replaces: they end with six letters
// at random. Six of one case alone are rather a word that somebody gave to a copy.
const char kTemporaryName[] = "\\A(\\.velmora-save-[0-9]+-[0-9]+"
                              "|cookie\\.ini\\.lock"
                              "|(cookie\\.ini|cookie\\.xml|[^/]*\\.(?i:png))\\."
                              "(?=[a-z]*[A-Z])(?=[A-Z]*[a-z])[A-Za-z]{6})\\z";

// A field of an entry that a getter of its store hides when it is over the limit.
struct Limit {
    DocumentKind kind;
    const char *field; // null: the entry's own text
    int bytes;
    bool isEncoded;
    const char *meaning;
};

const Limit kLimits[] = {
    {Bookmarks, vlm::bookmarks::kUrl, vlm::bookmarks::kMaxUrlBytes, false,
     "the browser opens about:blank instead"},
    {Bookmarks, vlm::bookmarks::kTitle, vlm::bookmarks::kMaxTitleBytes, false,
     "the browser shows no title"},
    {Bookmarks, vlm::bookmarks::kThumbnail, vlm::bookmarks::kMaxThumbnailPathBytes, false,
     "the browser shows no thumbnail"},
    {Credentials, vlm::auth::kHostName, vlm::auth::kMaxHostBytes, false,
     "the browser never uses these credentials"},
    {Credentials, vlm::auth::kPortNum, vlm::auth::kMaxPortBytes, false,
     "the browser never uses these credentials"},
    {Credentials, vlm::auth::kUser, vlm::auth::kMaxSecretBytes, true,
     "the browser sends no user name"},
    {Credentials, vlm::auth::kPasswd, vlm::auth::kMaxSecretBytes, true,
     "the browser sends no password"},
    {Fonts, nullptr, vlm::fonts::kMaxNameBytes, false, "the browser offers a font without a name"},
};

// A field with a date.
struct Date {
    DocumentKind kind;
    const char *field;
    vlm::TimeText form;
    const char *format;
    const char *meaning;
};

const Date kDates[] = {
    {History, vlm::history::kDateTime, vlm::ToMinute, "yyyy/MM/dd hh:mm",
     "the browser puts the visit last, and its next save erases the date"},
    {CookieDocument, vlm::cookies::kExpires, vlm::ToSecond, "yyyy/MM/dd hh:mm:ss",
     "converted to cookie.ini, it ends with the session"},
};

const char kRepair[] = "run 'velmora-profile repair'";

class Search
{
public:
    explicit Search(const QString &directory) : m_directory(directory) {}

    QList<Finding> findings();

private:
    void add(const QString &file, const QString &what, const QString &meaning,
             const QString &action)
    {
        m_findings.append({file, what, meaning, action});
    }

    void lookAtDocument(const Document &document);
    bool lookAtState(const Document &document);
    void lookAtRoot(const Document &document);
    void lookAtCount(const Document &document);
    void lookAtIds(const Document &document);
    void lookAtNames(const Document &document);
    void lookAtLimits(const Document &document);
    void lookAtDates(const Document &document);
    void lookAtPreferences(const Document &document);
    void lookAtSecurity(const Document &document);
    void lookAtThumbnailFields(const Document &document);
    void lookAtThumbnailFiles();
    void lookAtCookieFile();
    void lookAtModes();
    void lookForTemporaryFiles(const QString &folder);

    QString m_directory;
    QList<Finding> m_findings;
};

QString entryName(const Document &document, int position)
{
    // Before the end that tells a password from a host is cut off.
    QString label = withoutUserInfo(document.type().label(document.children().at(position)));
    const int kShown = 60;
    if (label.size() > kShown) {
        label = label.left(kShown) + text("...");
    }
    return text("entry %1 (%2)").arg(position).arg(label);
}

QList<Finding> Search::findings()
{
    for (const DocumentType &type : documentTypes()) {
        lookAtDocument(Document(type.kind, m_directory));
    }
    lookAtThumbnailFiles();
    lookAtCookieFile();
    lookAtModes();
    lookForTemporaryFiles(QString());
    lookForTemporaryFiles(text(kThumbnailFolder));
    return m_findings;
}

void Search::lookAtDocument(const Document &document)
{
    if (!lookAtState(document)) {
        return;
    }
    lookAtRoot(document);
    if (!document.type().entryName) {
        lookAtPreferences(document);
        lookAtSecurity(document);
        return;
    }
    lookAtCount(document);
    lookAtIds(document);
    lookAtNames(document);
    lookAtLimits(document);
    lookAtDates(document);
    if (document.type().kind == Bookmarks) {
        lookAtThumbnailFields(document);
    }
}

// False when there is nothing to look at any further.
bool Search::lookAtState(const Document &document)
{
    const QString name = text(document.type().fileName);
    switch (document.state()) {
    case Document::Missing:
        return false;
    case Document::Unreadable:
        add(name, text("it cannot be read"), text("the browser starts without what it holds"),
            text("check its owner and mode"));
        return false;
    case Document::Empty:
        add(name, text("it is empty"), text("the browser starts without what it should hold"),
            text("restore it, or remove it to start afresh"));
        return false;
    case Document::Damaged:
        add(name, text("it is %1").arg(damageText(document.damage())),
            text("the browser reads up to the damage, and its next save loses what follows"),
            text(kRepair));
        return true;
    case Document::Whole:
        break;
    }
    return true;
}

void Search::lookAtRoot(const Document &document)
{
    const QString expected = text(document.type().rootName);
    if (document.rootName().isEmpty() || document.rootName() == expected) {
        return;
    }
    add(text(document.type().fileName),
        text("its root is named '%1', not '%2'").arg(document.rootName(), expected),
        text("the browser reads its entries anyway; it may be another file's content"),
        text("check whose content it is; if it is right, %1").arg(text(kRepair)));
}

void Search::lookAtCount(const Document &document)
{
    const int count = int(document.children().size());
    const QString name = text(document.type().fileName);
    if (count > kMaxEntries) {
        add(name, text("it holds %1 entries, %2 can be reached").arg(count).arg(kMaxEntries),
            text("the browser never shows the others, and may drop them"),
            text("remove some entries, or %1, which keeps the first %2")
                .arg(text(kRepair))
                .arg(kMaxEntries));
    }
    if (document.type().kind == CookieDocument && count > vlm::cookies::kMaxConverted) {
        add(name,
            text("it holds %1 cookies, %2 are converted")
                .arg(count)
                .arg(vlm::cookies::kMaxConverted),
            text("the others never come back to the browser, and may pile up"),
            text("remove the file and run 'velmora-profile cookies to-xml' for a fresh one"));
    }
}

// One finding tells of all: a file that another program wrote has no ids at all.
void Search::lookAtIds(const Document &document)
{
    QSet<int> seen;
    int missing = 0;
    int repeated = 0;
    const QList<VLMC_XMLNode *> entries = document.children().mid(0, kMaxEntries);
    for (VLMC_XMLNode *const entry : entries) {
        bool isNumber = false;
        const int id = idOf(entry).toInt(&isNumber);
        missing += isNumber ? 0 : 1;
        repeated += isNumber && seen.contains(id) ? 1 : 0;
        if (isNumber) {
            seen.insert(id);
        }
    }
    if (missing + repeated == 0) {
        return;
    }
    const bool matters = document.type().kind == CookieDocument;
    add(text(document.type().fileName),
        text("%1 without an id, %2 with the id of another")
            .arg(counted(missing, "entry", "entries"))
            .arg(repeated),
        text(matters ? "a conversion does not see these cookies"
                     : "none: the browser numbers them when it loads the file"),
        text(matters ? kRepair : "nothing, or run 'velmora-profile repair'"));
}

void Search::lookAtNames(const Document &document)
{
    const QList<VLMC_XMLNode *> &entries = document.children();
    for (int i = 0; i < entries.size(); ++i) {
        const QString name = entries.at(i)->getName();
        if (name != text(document.type().entryName)) {
            add(text(document.type().fileName),
                text("entry %1 is named '%2', not '%3'")
                    .arg(i)
                    .arg(name, text(document.type().entryName)),
                text("the browser's count leaves it out, so that the last entry is not shown"),
                text("remove the element"));
        }
    }
}

void Search::lookAtLimits(const Document &document)
{
    const QList<VLMC_XMLNode *> &entries = document.children();
    for (const Limit &limit : kLimits) {
        for (int i = 0; limit.kind == document.type().kind && i < entries.size(); ++i) {
            const QByteArray stored =
                (limit.field ? fieldText(entries.at(i), limit.field) : entries.at(i)->getText())
                    .toUtf8();
            const int size =
                int(limit.isEncoded ? QByteArray::fromBase64(stored).size() : stored.size());
            if (size > limit.bytes) {
                add(text(document.type().fileName),
                    text("%1: %2 has %3 bytes, over the limit of %4")
                        .arg(entryName(document, i),
                             text(limit.field ? limit.field : document.type().entryName),
                             QString::number(size), QString::number(limit.bytes)),
                    text(limit.meaning), text("shorten it in the file, or remove the entry"));
            }
        }
    }
}

void Search::lookAtDates(const Document &document)
{
    const QList<VLMC_XMLNode *> &entries = document.children();
    for (const Date &date : kDates) {
        for (int i = 0; date.kind == document.type().kind && i < entries.size(); ++i) {
            const QString value = fieldText(entries.at(i), date.field);
            // A session cookie has none.
            const bool mayBeEmpty = date.kind == CookieDocument;
            if ((value.isEmpty() && mayBeEmpty) || vlm::timeOfText(value, date.form).isValid()) {
                continue;
            }
            add(text(document.type().fileName),
                text("%1: the date '%2' does not parse").arg(entryName(document, i), value),
                text(date.meaning),
                text("write it as %1 in the file, or remove the entry").arg(text(date.format)));
        }
    }
}

void Search::lookAtPreferences(const Document &document)
{
    for (const Preference &preference : preferences()) {
        if (preference.document != document.type().kind) {
            continue;
        }
        const PreferenceValue value = valueOf(preference, document);
        // A home page left empty is a page of its own: the blank one.
        if (value.hidden.isEmpty() || value.value.isEmpty()) {
            continue;
        }
        const bool isWord = preference.kind == Preference::Word;
        add(text(document.type().fileName),
            text("%1: %2").arg(
                preference.name(),
                isWord ? text("'%1' is not a value that the browser knows").arg(value.value)
                       : value.hidden),
            text("the browser uses its default '%1'").arg(preference.fallback),
            text("run 'velmora-profile prefs set' with %1").arg(limitOf(preference)));
    }
}

void Search::lookAtSecurity(const Document &document)
{
    for (VLMC_XMLNode *const group : document.children()) {
        if (document.type().kind == CommonPreferences
            && group->getName() == text(vlm::commonPreferences::kSecurity)
            && !group->isAttribute(text(vlm::commonPreferences::kVersion))) {
            add(text(document.type().fileName), text("security has no version"),
                text("the browser's next load switches SSL 3.0 off, whatever the file says"),
                text("nothing; to keep SSL 3.0 on, set security.enableSSL30 once"));
        }
    }
}

void Search::lookAtThumbnailFields(const Document &document)
{
    const QList<VLMC_XMLNode *> &entries = document.children();
    for (int i = 0; i < entries.size(); ++i) {
        const QString name = thumbnailName(fieldText(entries.at(i), vlm::bookmarks::kThumbnail));
        const QString file = text(document.type().fileName);
        if (!fieldOf(entries.at(i), vlm::bookmarks::kThumbnail)) {
            add(file, text("%1 has no thumbnail element").arg(entryName(document, i)),
                text("the browser shows no thumbnail for it or any bookmark after it"),
                text("remove the bookmark and add it again"));
        } else if (name.isEmpty()) {
            add(file, text("%1 has no thumbnail").arg(entryName(document, i)),
                text("the browser shows the bookmark without a picture"),
                text("nothing: the browser takes one when the page is bookmarked again"));
        } else if (!QFile::exists(m_directory + text(kThumbnailFolder) + name)) {
            add(file,
                text("%1 names thumbnail/%2, which is missing").arg(entryName(document, i), name),
                text("the browser shows the bookmark without a picture"),
                text("restore the file, or unpack it with 'velmora-profile thumbnails unpack'"));
        }
    }
}

void Search::lookAtThumbnailFiles()
{
    const QList<Thumbnail> thumbnails = thumbnailsOf(m_directory);
    for (const Thumbnail &thumbnail : thumbnails) {
        if (thumbnail.bookmarks.isEmpty()) {
            add(text("thumbnail/%1").arg(thumbnail.name), text("no bookmark names it"),
                text("none; it takes up space"), text("run 'velmora-profile thumbnails clean'"));
        }
    }
}

void Search::lookAtCookieFile()
{
    const CookieFile file = readCookieFile(m_directory);
    if (file.state == Document::Unreadable) {
        add(text(kIniFileName), text("it cannot be read"),
            text("the browser starts without cookies"), text("check its owner and mode"));
    } else if (file.state == Document::Damaged) {
        add(text(kIniFileName), text("it is damaged: %1").arg(file.damage),
            text("the browser reads what is whole and loses the rest"), text(kRepair));
    }
}

void Search::lookAtModes()
{
    const QStringList files = secretFiles(m_directory);
    for (const QString &file : files) {
        if (isOpenToOthers(m_directory + file)) {
            add(file, text("users other than its owner can read or write it"),
                text("every account on the device can get at the secrets in it"),
                text("run 'chmod 600' on it, or 'velmora-profile repair'"));
        }
    }
}

// What a process that was killed while saving leaves beside the file.
void Search::lookForTemporaryFiles(const QString &folder)
{
    const QRegularExpression temporary(text(kTemporaryName));
    const QStringList names = QDir(m_directory + folder)
                                  .entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name)
                                  .filter(temporary);
    for (const QString &name : names) {
        const bool isLock = name.endsWith(text(".lock"));
        add(folder + name,
            text(isLock ? "a lock that was left behind" : "a temporary file that was left behind"),
            text(isLock ? "the next save of the cookies may wait half a minute for it"
                        : "none; it takes up space, and may hold secrets"),
            text("remove it when no browser is running"));
    }
}
} // namespace

QList<profile::Finding> profile::findingsOf(const QString &directory)
{
    return Search(directory).findings();
}

QString profile::toText(const QList<Finding> &findings)
{
    QString all;
    for (const Finding &finding : findings) {
        all += text("%1: %2\n  means: %3\n  to do: %4\n")
                   .arg(printable(finding.file), printable(finding.what), finding.meaning,
                        finding.action);
    }
    return all;
}

QJsonArray profile::toJson(const QList<Finding> &findings)
{
    QJsonArray array;
    for (const Finding &finding : findings) {
        array.append(QJsonObject{{text("file"), finding.file},
                                 {text("what"), finding.what},
                                 {text("meaning"), finding.meaning},
                                 {text("action"), finding.action}});
    }
    return array;
}
