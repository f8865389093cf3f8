#include "tests/support/TemporaryFolder.h"

#include <QtCore/QFile>

#include <cstdio>
#include <cstdlib>
#include <ftw.h>
#include <sys/stat.h>

namespace
{
const int kOpenFolders = 16;

int removeEntry(const char *name, const struct stat *, int, FTW *) { return remove(name); }
} // namespace

TemporaryFolder::TemporaryFolder(const QString &parent)
    : m_name(QFile::encodeName(parent) + "/velmora-XXXXXX")
{
    if (!mkdtemp(m_name.data())) {
        qFatal("no temporary folder %s", m_name.constData());
    }
}

TemporaryFolder::~TemporaryFolder() { removeFolder(path()); }

QString TemporaryFolder::path() const { return QFile::decodeName(m_name) + QLatin1Char('/'); }

bool removeFolder(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    return nftw(name.constData(), removeEntry, kOpenFolders, FTW_DEPTH | FTW_PHYS) == 0;
}
