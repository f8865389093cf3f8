#include "tools/velmora-profile/profile/Secrets.h"

#include "cookies/AuthElements_p.h"
#include "preferences/CommonRows_p.h"
#include "tools/velmora-profile/output/Text.h"
#include "tools/velmora-profile/profile/CookieFile.h"
#include "tools/velmora-profile/profile/Preferences.h"

#include <QtCore/QFileInfo>

namespace
{
using namespace profile;

const char *const kSecretFiles[] = {vlm::auth::kFileName, kIniFileName, kCookieXml};

QString proxyPassword()
{
    using namespace vlm::commonPreferences;
    return text("%1.%2").arg(text(kProxyUserPass.group), text(kProxyUserPass.element));
}
} // namespace

QStringList profile::secretFiles(const QString &directory)
{
    QStringList files;
    for (const char *const file : kSecretFiles) {
        files.append(text(file));
    }
    const Document common(CommonPreferences, directory);
    const PreferenceValue password = valueOf(*preferenceNamed(proxyPassword()), common);
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
