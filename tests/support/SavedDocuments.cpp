#include "tests/support/SavedDocuments.h"

#include "core/NodeView_p.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLReader.h"
#include "core/VLMC_XMLWriter.h"
#include "tests/support/QtTest.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QMap>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QSet>

#include <dlfcn.h>
#include <fcntl.h>
#include <libxml/relaxng.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{
const int kParseOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

struct Kind {
    // Null where the caller names the file.
    const char *fileName;
    const char *rootName;
    const char *schema;
};

const Kind kKinds[] = {
    {"repostry.xml", "repostry_common", "repostry.rng"},
    {"repostry_private.xml", "repostry", "repostry_private.rng"},
    {"bookmark.xml", "bookmarks", "bookmark.rng"},
    {nullptr, "thumbnail", "thumbnail.rng"},
    {"visit.xml", "history", "visit.rng"},
    {nullptr, "cookie", "cookies.rng"},
    {"authinfo.xml", "authentication", "authinfo.rng"},
    {"fontlist.xml", "fontlist", "fontlist.rng"},
};

struct Source {
    QString path;
    QByteArray content;
};

struct Watch {
    QMutex mutex;
    QMap<QByteArray, xmlRelaxNGPtr> schemas;
    // What roots were read from, until the first time that they are saved: few are.
    QMap<const VLMC_XMLNode *, Source> sources;
    // Roots that were read from files that do not conform.
    QSet<const VLMC_XMLNode *> foreign;
    int guards;
    int conforming;
    int muted;
};

Watch &watch()
{
    // Never destroyed: documents may be saved while the process exits.
    static Watch *const instance = new Watch();
    return *instance;
}

// Straight to the kernel, as other pieces watch the functions of the system's library. Empty for
// what is no regular file.
QByteArray contentOf(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    const int file =
        int(syscall(SYS_openat, AT_FDCWD, name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (file < 0) {
        return QByteArray();
    }
    QByteArray content;
    struct statx status = {};
    // The one such call with the same structure on every processor.
    if (syscall(SYS_statx, file, "", AT_EMPTY_PATH, STATX_TYPE, &status) == 0
        && S_ISREG(status.stx_mode)) {
        char part[16384];
        long size = 0;
        while ((size = syscall(SYS_read, file, part, sizeof part)) > 0) {
            content.append(part, int(size));
        }
    }
    syscall(SYS_close, file);
    return content;
}

// A known file name tells the kind, whatever the root is called; a root tells it in other files.
const Kind *kindOf(const QString &path, const xmlNode *root)
{
    const QByteArray fileName = QFileInfo(path).fileName().toUtf8();
    const Kind *byRoot = nullptr;
    for (const Kind &kind : kKinds) {
        if (kind.fileName && fileName == kind.fileName) {
            return &kind;
        }
        if (root && xmlStrEqual(root->name, reinterpret_cast<const xmlChar *>(kind.rootName))) {
            byRoot = &kind;
        }
    }
    return byRoot;
}

extern "C" void appendError(void *errors, xmlErrorPtr error)
{
    if (error->message) {
        static_cast<QByteArray *>(errors)->append(error->message);
    }
}

xmlRelaxNGPtr schemaNamed(const char *name)
{
    xmlRelaxNGPtr &schema = watch().schemas[name];
    if (!schema) {
        const QByteArray text =
            contentOf(QString::fromUtf8(SCHEMA_FOLDER "/%1").arg(QLatin1String(name)));
        xmlRelaxNGParserCtxtPtr parser =
            xmlRelaxNGNewMemParserCtxt(text.constData(), int(text.size()));
        schema = xmlRelaxNGParse(parser);
        xmlRelaxNGFreeParserCtxt(parser);
        if (!schema) {
            qFatal("%s is no schema", name);
        }
    }
    return schema;
}

bool conforms(xmlDocPtr document, const char *schema, QByteArray *errors)
{
    xmlRelaxNGValidCtxtPtr context = xmlRelaxNGNewValidCtxt(schemaNamed(schema));
    xmlRelaxNGSetValidStructuredErrors(context, appendError, errors);
    const int result = xmlRelaxNGValidateDoc(context, document);
    xmlRelaxNGFreeValidCtxt(context);
    return result == 0;
}

enum Verdict { Conforming, Broken, NoStores };

Verdict judge(const QString &path, const QByteArray &content, QByteArray *errors)
{
    xmlDocPtr document =
        xmlReadMemory(content.constData(), int(content.size()), nullptr, nullptr, kParseOptions);
    const Kind *const kind = kindOf(path, document ? xmlDocGetRootElement(document) : nullptr);
    Verdict verdict = NoStores;
    if (kind && document) {
        verdict = conforms(document, kind->schema, errors) ? Conforming : Broken;
    } else if (kind) {
        *errors = "It is not well-formed.\n";
        verdict = Broken;
    }
    xmlFreeDoc(document);
    return verdict;
}

// The first symbol of this name behind the one in the program.
template <typename Function>
Function real(const char *name)
{
    void *const function = dlsym(RTLD_NEXT, name);
    if (!function) {
        qFatal("the settings library has no %s", name);
    }
    return reinterpret_cast<Function>(function);
}

bool isForeign(const VLMC_XMLNode *root)
{
    if (watch().sources.contains(root)) {
        const Source source = watch().sources.take(root);
        QByteArray errors;
        if (judge(source.path, source.content, &errors) != Conforming) {
            watch().foreign.insert(root);
        }
    }
    return watch().foreign.contains(root);
}
} // namespace

ForeignDocuments::ForeignDocuments()
{
    const QMutexLocker locker(&watch().mutex);
    ++watch().guards;
}

ForeignDocuments::~ForeignDocuments()
{
    const QMutexLocker locker(&watch().mutex);
    --watch().guards;
}

int conformingDocuments()
{
    const QMutexLocker locker(&watch().mutex);
    return watch().conforming;
}

int mutedDocuments()
{
    const QMutexLocker locker(&watch().mutex);
    return watch().muted;
}

// Takes the place of the library's own.
__attribute__((visibility("default"))) VLMC_XMLNode *VLMC_XMLReader::read(QString &path)
{
    static const auto call =
        real<VLMC_XMLNode *(*)(VLMC_XMLReader *, QString &)>("_ZN14VLMC_XMLReader4readER7QString");
    VLMC_XMLNode *const root = call(this, path);
    const QMutexLocker locker(&watch().mutex);
    watch().foreign.remove(root);
    watch().sources.remove(root);
    // What a file that is missing or no document reads as brings nothing in.
    if (!root->getName().isEmpty() || !vlm::NodeView::children(*root).isEmpty()) {
        watch().sources.insert(root, {path, contentOf(path)});
    }
    return root;
}

// Takes the place of the library's own.
__attribute__((visibility("default"))) bool VLMC_XMLWriter::write(QString &path, VLMC_XMLNode *root)
{
    static const auto call = real<bool (*)(VLMC_XMLWriter *, QString &, VLMC_XMLNode *)>(
        "_ZN14VLMC_XMLWriter5writeER7QStringP12VLMC_XMLNode");
    if (!call(this, path, root)) {
        return false;
    }
    const QMutexLocker locker(&watch().mutex);
    if (isForeign(root)) {
        return true;
    }
    const QByteArray content = contentOf(path);
    QByteArray errors;
    const Verdict verdict = judge(path, content, &errors);
    if (verdict == Conforming) {
        ++watch().conforming;
    } else if (verdict == Broken && watch().guards > 0) {
        ++watch().muted;
    } else if (verdict == Broken) {
        const QByteArray message =
            path.toUtf8() + " does not conform to its schema:\n" + errors + content;
        QTest::qFail(message.constData(), __FILE__, __LINE__);
    }
    return true;
}
