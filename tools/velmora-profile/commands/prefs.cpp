// prefs: both preference documents under one set of names.

#include "preferences/VLMC_BrowserCommonSetting.h"
#include "preferences/VLMC_BrowserUserSetting.h"
#include "tools/velmora-profile/commands/Command.h"
#include "tools/velmora-profile/commands/Losses.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Guards.h"
#include "tools/velmora-profile/output/Password.h"
#include "tools/velmora-profile/output/Table.h"
#include "tools/velmora-profile/output/Text.h"
#include "tools/velmora-profile/profile/Document.h"
#include "tools/velmora-profile/profile/Preferences.h"

namespace
{
using namespace profile;

QString noteOn(const PreferenceValue &value)
{
    if (!value.inFile) {
        return text("default, not in the file");
    }
    return value.hidden.isEmpty() ? QString()
                                  : text("%1: the browser uses the default").arg(value.hidden);
}

QJsonObject jsonOf(const Preference &preference, const PreferenceValue &value, bool showSecrets)
{
    QJsonObject object;
    object.insert(text("name"), text(preference.name));
    object.insert(text("value"), shown(preference, value.value, showSecrets));
    object.insert(text("default"), text(preference.fallback));
    object.insert(text("inFile"), value.inFile);
    object.insert(text("hidden"), value.hidden);
    object.insert(text("file"), text(documentType(preference.document).fileName));
    return object;
}

int failUnknown(const QString &name)
{
    return fail(text("there is no preference '%1'; 'prefs list' names them all").arg(name));
}

int failRefused(const Preference &preference, const QString &value)
{
    if (preference.kind == Preference::Word) {
        return fail(
            text("%1 takes %2, not '%3'").arg(text(preference.name), limitOf(preference), value));
    }
    return fail(text("%1 takes %2; these are %3")
                    .arg(text(preference.name), limitOf(preference))
                    .arg(utf8Bytes(value)));
}

bool isKnownWord(const Preference &preference, const QString &value)
{
    return preference.kind != Preference::Word
           || text(preference.words).split(QLatin1Char(' ')).contains(value);
}

void load(DocumentKind kind)
{
    QString directory = text(kHere);
    if (kind == CommonPreferences) {
        VLMC_BrowserCommonSetting::getInstance()->loadSetting(&directory);
    } else {
        VLMC_BrowserUserSetting::getInstance()->loadSetting(&directory);
    }
}

int saveCommon()
{
    const Uninterrupted uninterrupted;
    const OwnerOnly ownerOnly; // it may hold the proxy's password
    VLMC_BrowserCommonSetting *const store = VLMC_BrowserCommonSetting::getInstance();
    QString directory = text(kHere);
    store->saveSetting(&directory);
    return isSaved(CommonPreferences, contentOf(store)) ? Done : Failed;
}

int saveUser()
{
    const Uninterrupted uninterrupted;
    VLMC_BrowserUserSetting *const store = VLMC_BrowserUserSetting::getInstance();
    QString directory = text(kHere);
    store->saveSetting(&directory);
    return isSaved(UserPreferences, contentOf(store)) ? Done : Failed;
}

// Encoded values keep every character.
QList<Loss> lossesOf(const Preference &preference, const QString &value)
{
    if (preference.kind != Preference::Text || isKept(value)) {
        return QList<Loss>();
    }
    return {{text(preference.name), text("the file cannot hold all its characters")}};
}

// A value, from the command line or, for a password, from standard input alone.
int valueFrom(const Call &call, const Preference &preference, QString *value)
{
    const bool given = call.operands.size() == 2;
    if (preference.kind == Preference::Base64Secret) {
        if (given) {
            return fail(text("%1 is read from standard input, where others do not see it; leave it "
                             "out of the command line")
                            .arg(text(preference.name)));
        }
        QByteArray secret;
        if (!readSecret("Password", &secret)) {
            return Failed;
        }
        *value = QString::fromUtf8(secret);
        return Done;
    }
    if (!given) {
        return fail(
            text("%1 takes %2; name a value").arg(text(preference.name), limitOf(preference)));
    }
    *value = call.operands.at(1);
    return Done;
}
} // namespace

int profile::listPreferences(const Call &call)
{
    const Document common(CommonPreferences, text(kHere));
    const Document user(UserPreferences, text(kHere));
    if (warnOfDamage(common) != Done || warnOfDamage(user) != Done) {
        return Failed;
    }
    Table table({text("Name"), text("Value"), text("Default"), text("Note")});
    QJsonArray array;
    const QList<Preference> all = preferences();
    for (const Preference &preference : all) {
        const PreferenceValue value =
            valueOf(preference, preference.document == CommonPreferences ? common : user);
        const bool secrets = call.has("show-secrets");
        table.add({text(preference.name), shown(preference, value.value, secrets),
                   text(preference.fallback), noteOn(value)});
        array.append(jsonOf(preference, value, secrets));
    }
    if (call.has("json")) {
        sayJson(array);
    } else {
        sayBytes(table.toText().toUtf8());
    }
    return Done;
}

int profile::getPreference(const Call &call)
{
    const Preference *const preference = preferenceNamed(call.operands.at(0));
    if (!preference) {
        return failUnknown(call.operands.at(0));
    }
    const Document document(preference->document, text(kHere));
    if (warnOfDamage(document) != Done) {
        return Failed;
    }
    const PreferenceValue value = valueOf(*preference, document);
    if (call.has("json")) {
        sayJson(jsonOf(*preference, value, call.has("show-secrets")));
        return Done;
    }
    say(printable(shown(*preference, value.value, call.has("show-secrets"))));
    if (!value.hidden.isEmpty()) {
        warn(text("%1: %2: the browser uses the default '%3'")
                 .arg(text(preference->name), value.hidden, text(preference->fallback)));
    }
    return Done;
}

int profile::setPreference(const Call &call)
{
    const Preference *const preference = preferenceNamed(call.operands.at(0));
    if (!preference) {
        return failUnknown(call.operands.at(0));
    }
    QString value;
    if (valueFrom(call, *preference, &value) != Done
        || refuseToRewrite(Document(preference->document, text(kHere))) != Done) {
        return Failed;
    }
    load(preference->document);
    if (!isKnownWord(*preference, value) || !preference->store(value)) {
        return failRefused(*preference, value);
    }
    const QList<Loss> losses = lossesOf(*preference, value);
    sayLosses(losses);
    if (refuseLosses(call, losses) != Done) {
        return Failed;
    }
    return preference->document == CommonPreferences ? saveCommon() : saveUser();
}
