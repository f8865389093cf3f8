// auth: authinfo.xml. Passwords come from standard input and are shown on request only.

#include "cookies/VLMC_AuthSetting.h"
#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Guards.h"
#include "tools/velmora-profile/output/Password.h"
#include "tools/velmora-profile/output/Table.h"
#include "tools/velmora-profile/output/Text.h"
#include "tools/velmora-profile/profile/Document.h"

namespace
{
using namespace profile;

const char *const kSchemes[] = {"basic", "digest", "NTLM"};

const int kMaxHostBytes = 256;
const int kMaxPortBytes = 5;
const int kMaxSecretBytes = 272;

VLMC_AuthSetting &store() { return *VLMC_AuthSetting::getInstance(); }

int load()
{
    if (refuseToRewrite(Document(profile::Credentials, text(kHere))) != Done) {
        return Failed;
    }
    QString directory = text(kHere);
    store().loadAuthInfo(&directory, kMaxEntries);
    return Done;
}

int save()
{
    const Uninterrupted uninterrupted;
    const OwnerOnly ownerOnly;
    QString directory = text(kHere);
    store().saveAuthInfo(&directory, kMaxEntries);
    return isSaved(profile::Credentials, contentOf(&store())) ? Done : Failed;
}

int schemeCode(const QString &scheme)
{
    for (int code = 0; code < 3; ++code) {
        if (scheme == text(kSchemes[code])) {
            return code;
        }
    }
    return -1;
}

QString decoded(VLMC_XMLNode *entry, const char *field)
{
    return QString::fromUtf8(QByteArray::fromBase64(fieldText(entry, field).toUtf8()));
}

QString password(VLMC_XMLNode *entry, bool showSecrets)
{
    return masked(decoded(entry, "passwd"), showSecrets);
}

QJsonObject jsonOf(int id, VLMC_XMLNode *entry, bool showSecrets)
{
    QJsonObject object;
    object.insert(text("id"), id);
    object.insert(text("host"), fieldText(entry, "hostName"));
    object.insert(text("port"), fieldText(entry, "portNum"));
    object.insert(text("scheme"), fieldText(entry, "authType"));
    object.insert(text("user"), decoded(entry, "user"));
    object.insert(text("password"), password(entry, showSecrets));
    return object;
}

// The first limit that a record is over; empty when the store takes it.
QString refusalOf(const VLMS_AuthInfo &info)
{
    const struct {
        const char *field;
        int bytes;
        int limit;
    } sizes[] = {
        {"host", utf8Bytes(info.hostName), kMaxHostBytes},
        {"port", utf8Bytes(info.portNum), kMaxPortBytes},
        {"user", int(info.user.size()), kMaxSecretBytes},
        {"password", int(info.passwd.size()), kMaxSecretBytes},
    };
    for (const auto &size : sizes) {
        if (size.bytes > size.limit) {
            return text("the %1 has %2 bytes, over the limit of %3")
                .arg(text(size.field))
                .arg(size.bytes)
                .arg(size.limit);
        }
    }
    return isKept(info.hostName) && isKept(info.portNum)
               ? QString()
               : text("the file cannot hold all characters of host and port");
}
} // namespace

int profile::listCredentials(const Call &call)
{
    const Document document(Credentials, text(kHere));
    if (warnOfDamage(document) != Done) {
        return Failed;
    }
    const QList<VLMC_XMLNode *> entries = document.children();
    const bool secrets = call.has("show-secrets");
    Table table(
        {text("Id"), text("Host"), text("Port"), text("Scheme"), text("User"), text("Password")});
    QJsonArray array;
    for (int i = 0; i < entries.size(); ++i) {
        VLMC_XMLNode *const entry = entries.at(i);
        table.add({QString::number(i), fieldText(entry, "hostName"), fieldText(entry, "portNum"),
                   fieldText(entry, "authType"), decoded(entry, "user"), password(entry, secrets)});
        array.append(jsonOf(i, entry, secrets));
    }
    if (call.has("json")) {
        sayJson(array);
    } else {
        sayBytes(table.toText().toUtf8());
    }
    return Done;
}

int profile::addCredentials(const Call &call)
{
    const int scheme = schemeCode(call.operands.at(2));
    if (scheme < 0) {
        return fail(text("the scheme is basic, digest or NTLM, not '%1'").arg(call.operands.at(2)));
    }
    if (load() != Done) {
        return Failed;
    }
    if (store().getXMLNodeCnt() >= kMaxEntries) {
        return fail(text("the list is full with %1; remove some first").arg(kMaxEntries));
    }
    VLMS_AuthInfo info = {call.operands.at(0), call.operands.at(1),
                          static_cast<unsigned char>(scheme), call.operands.at(3).toUtf8(),
                          QByteArray()};
    if (!readSecret("Password", &info.passwd)) {
        return Failed;
    }
    const QString refusal = refusalOf(info);
    if (!refusal.isEmpty() || !store().setAuthInfo(&info)) {
        return fail(text("%1; nothing was changed").arg(refusal));
    }
    return save();
}

int profile::removeCredentials(const Call &call)
{
    QList<int> ids;
    if (load() != Done || !readIds(call, store().getXMLNodeCnt(), &ids)) {
        return Failed;
    }
    for (const int id : qAsConst(ids)) {
        store().deleteAuthInfo(id);
    }
    return save();
}
