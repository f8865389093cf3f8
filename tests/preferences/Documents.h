#ifndef TESTS_PREFERENCES_DOCUMENTS_H
#define TESTS_PREFERENCES_DOCUMENTS_H

#include "tests/support/Files.h"

/// What a store of preferences saves under this name.
template <typename Store>
QByteArray savedAs(const char *fileName, Store &store)
{
    TestDirectory directory;
    store.saveSetting(directory.pathPointer());
    return readFile(directory.file(fileName));
}

/// Has a store of preferences load a document of this name.
template <typename Store>
void loadAs(const char *fileName, Store &store, const QByteArray &document)
{
    TestDirectory directory;
    writeFile(directory.file(fileName), document);
    store.loadSetting(directory.pathPointer());
}

/// The document with a part that it holds once replaced.
inline QByteArray with(QByteArray document, const QByteArray &part, const QByteArray &replacement)
{
    if (document.count(part) != 1) {
        qFatal("not once in the document: %s", part.constData());
    }
    return document.replace(part, replacement);
}

inline QByteArray element(const QByteArray &name, const QByteArray &text)
{
    return text.isEmpty() ? '<' + name + "/>" : '<' + name + '>' + text + "</" + name + '>';
}

inline QString repeated(int count) { return QString(count, QLatin1Char('x')); }

/// Characters of three bytes, filled up with single bytes.
inline QString wide(int bytes) { return QString(bytes / 3, QChar(0x3042)) + repeated(bytes % 3); }

/// Leaves the store without a root, or counts what a store of preferences asks of its base.
template <typename Store>
class Override : public Store
{
public:
    bool loads = true;
    int loadCalls = 0;
    int saveCalls = 0;
    QString path;

    void load(QString &file) override
    {
        ++loadCalls;
        path = file;
        if (loads) {
            Store::load(file);
        }
    }
    void save(QString &file) override
    {
        ++saveCalls;
        path = file;
    }
};

#endif
