// auth: authinfo.xml. Passwords come from standard input and are shown on request only.

#include "cookies/AuthElements_p.h"
#include "cookies/VLMC_AuthSetting.h"
#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/commands/Removal.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Listing.h"
#include "tools/velmora-profile/output/Password.h"
#include "tools/velmora-profile/profile/Entry.h"
#include "tools/velmora-profile/profile/Refusals.h"
#include "tools/velmora-profile/profile/Stores.h"

namespace
{
using namespace profile;

using namespace vlm::auth;

VLMC_AuthSetting &store() { return *VLMC_AuthSetting::getInstance(); }

int schemeCode(const QString &scheme)
{
    for (int code = 0; code < kAuthTypeCount; ++code) {
        if (scheme == text(kAuthTypes[code])) {
            return code;
        }
    }
    return -1;
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
               : text("host or port has characters that the file cannot hold");
}

int listCredentials(const Call &call)
{
    const Document document(Credentials, text(kProfileFolder));
    if (warnOfDamage(document) != Done) {
        return Failed;
    }
    Listing listing({{"id", "Id"},
                     {"host", "Host"},
                     {"port", "Port"},
                     {"scheme", "Scheme"},
                     {"user", "User"},
                     {"password", "Password"}});
    for (VLMC_XMLNode *const entry : document.children()) {
        listing.add({listing.json().size(), fieldText(entry, kHostName), fieldText(entry, kPortNum),
                     fieldText(entry, kAuthType), decodedText(entry, kUser),
                     masked(decodedText(entry, kPasswd), call.has("show-secrets"))});
    }
    return listing.say(call.has("json"));
}

int addCredentials(const Call &call)
{
    const int scheme = schemeCode(call.operands.at(2));
    if (scheme < 0) {
        return fail(text("the scheme is basic, digest or NTLM, not '%1'").arg(call.operands.at(2)));
    }
    if (loadStore(Credentials) != Done) {
        return Failed;
    }
    if (store().getXMLNodeCnt() >= kMaxEntries) {
        return fail(text("the list already holds %1 entries; remove some first").arg(kMaxEntries));
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
    return saveStore(Credentials);
}

int removeCredentials(const Call &call)
{
    return loadStore(Credentials) == Done
               ? removeEntries(call, Credentials, [](int id) { store().deleteAuthInfo(id); })
               : int(Failed);
}
} // namespace

namespace profile
{
QList<Command> authCommands()
{
    return {
        {"auth", "list", "DIR", 0, 0, "json show-secrets", "all credentials", Reads,
         listCredentials},
        {"auth", "add", "DIR HOST PORT SCHEME USER", 4, 4, "",
         "add credentials, the password from standard input", Writes, addCredentials},
        {"auth", "remove", "DIR ID...", 1, kMaxEntries, "", "remove credentials", Writes,
         removeCredentials},
    };
}
} // namespace profile
