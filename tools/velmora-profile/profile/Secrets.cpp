#include "tools/velmora-profile/profile/Secrets.h"

#include "tools/velmora-profile/output/Text.h"
#include "tools/velmora-profile/profile/Preferences.h"

#include <QtCore/QFileInfo>

namespace
{
using namespace profile;

const char *const kSecretFiles[] = {"authinfo.xml", "cookie.ini", "cookie.xml"};
} // namespace

QStringList profile::secretFiles(const QString &directory)
{
    QStringList files;
    for (const char *const file : kSecretFiles) {
        files.append(text(file));
    }
    const Document common(CommonPreferences, directory);
    const PreferenceValue password = valueOf(*preferenceNamed(text("proxy.proxyUserPass")), common);
    if (password.inFile && !password.value.isEmpty()) {
        files.append(text(common.type().fileName));
    }
    return files;
}

bool profile::isOpenToOthers(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile()
           && (file.permissions()
               & (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther));
}

bool profile::mayHoldSecrets(const QString &file)
{
    for (const char *const secretFile : kSecretFiles) {
        if (file == text(secretFile)) {
            return true;
        }
    }
    return file == text(documentType(CommonPreferences).fileName);
}
