#include "tests/support/Files.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QEvent>
#include <QtCore/QFile>

TestDirectory::TestDirectory() : m_directory(QDir::tempPath()), m_path(m_directory.path()) {}

QString TestDirectory::path() const { return m_path; }

QString *TestDirectory::pathPointer() { return &m_path; }

QString TestDirectory::file(const char *name) const { return m_path + QString::fromUtf8(name); }

char *TestDirectory::localFile(const char *name)
{
    m_localFiles.append(QFile::encodeName(file(name)));
    return m_localFiles.last().data();
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        QTest::qFail(qPrintable(QString::fromLatin1("cannot read %1").arg(path)), __FILE__,
                     __LINE__);
        return QByteArray();
    }
    return file.readAll();
}

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        QTest::qFail(qPrintable(QString::fromLatin1("cannot write %1").arg(path)), __FILE__,
                     __LINE__);
    }
}

bool exists(const QString &path) { return QFile::exists(path); }

void runDeferredDeletes() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

bool sameBytes(const QByteArray &actual, const QByteArray &expected, const char *file, int line)
{
    if (actual == expected) {
        return QTest::qVerify(true, "", "", file, line);
    }
    const QList<QByteArray> actualLines = actual.split('\n');
    const QList<QByteArray> expectedLines = expected.split('\n');
    int row = 0;
    while (row < actualLines.size() && row < expectedLines.size()
           && actualLines.at(row) == expectedLines.at(row)) {
        ++row;
    }
    const QByteArray message =
        "documents differ at line " + QByteArray::number(row + 1) + "\n   actual:   "
        + (row < actualLines.size() ? actualLines.at(row) : QByteArray("(end)")) + "\n   expected: "
        + (row < expectedLines.size() ? expectedLines.at(row) : QByteArray("(end)"))
        + "\n   the whole actual document:\n" + actual;
    QTest::qFail(message.constData(), file, line);
    return false;
}
