#ifndef PREFERENCES_COMMONROWS_P_H
#define PREFERENCES_COMMONROWS_P_H

#include "preferences/DeleteTiming_p.h"
#include "preferences/Preferences_p.h"

// The document of the preferences that all users share: a row for each.
namespace vlm
{
namespace commonPreferences
{
const char kFileName[] = "repostry.xml";
const char kRoot[] = "repostry_common";

const char kCache[] = "cache";
const char kProxy[] = "proxy";
const char kSecurity[] = "security";
const char kVersion[] = "version";
const char kSecurityVersion[] = "2.0";

const char kTrue[] = "true";
const char kFalse[] = "false";
const char kPort[] = "8080";

const int kMaxHostBytes = 253;
const int kMaxPortBytes = 5;
const int kMaxDomainsBytes = 253;
const int kMaxCredentialBytes = 80;

// One row per preference; clang-format would fold them into columns.
// clang-format off
constexpr FlagEntry kAcceptCookie = {"cookie", "acceptCookie", "accept", "refuse", 1, NonZeroIsOn};
constexpr FlagEntry kEnableCache = {kCache, "enableCache", kTrue, kFalse, 1, NonZeroIsOn};
constexpr FlagEntry kKeyboardPriority = {"keyboard", "priority", "soft", "usb", 1, NonZeroIsOn};
constexpr FlagEntry kJavascript = {"javascript", "enableJavascript", kTrue, kFalse, 1, NonZeroIsOn};
constexpr FlagEntry kFlashPlugin = {"plugin", "enableFlashPlugin", kTrue, kFalse, 1, NonZeroIsOn};
constexpr FlagEntry kEnableHttp11 = {kProxy, "enableHTTP11", kTrue, kFalse, 1, NonZeroIsOn};

// Only 1 turns a proxy switch on; every other switch takes any non-zero code.
constexpr FlagEntry kEnableProxy = {kProxy, "enableProxy", kTrue, kFalse, 0, OnlyOneIsOn};
constexpr FlagEntry kEnableProxyAuth = {kProxy, "enableProxyAuth", kTrue, kFalse, 0, OnlyOneIsOn};

// Written through writeSecurityFlag, which stamps the group.
constexpr FlagEntry kEnableSsl30 = {kSecurity, "enableSSL30", kTrue, kFalse, 0, NonZeroIsOn};
constexpr FlagEntry kEnableTls10 = {kSecurity, "enableTLS10", kTrue, kFalse, 1, NonZeroIsOn};
constexpr FlagEntry kEnableTls11 = {kSecurity, "enableTLS11", kTrue, kFalse, 1, NonZeroIsOn};
constexpr FlagEntry kEnableTls12 = {kSecurity, "enableTLS12", kTrue, kFalse, 1, NonZeroIsOn};

constexpr TextEntry kHostName = {kProxy, "hostName", kMaxHostBytes, "", EmptyIsKept};
constexpr TextEntry kPortHttp = {kProxy, "portHTTP", kMaxPortBytes, kPort, EmptyIsKept};
constexpr TextEntry kPortHttps = {kProxy, "portHTTPS", kMaxPortBytes, kPort, EmptyIsKept};
constexpr TextEntry kUnusedDomain = {kProxy, "unusedDomain", kMaxDomainsBytes, "", EmptyIsKept};

constexpr BytesEntry kProxyUserName = {kProxy, "proxyUserName", kMaxCredentialBytes};
constexpr BytesEntry kProxyUserPass = {kProxy, "proxyUserPass", kMaxCredentialBytes};

// Not a switch: it reads more words than it writes.
constexpr DeleteTimingEntry kCacheDeleteTiming = {kCache, "cacheDeleteTiming"};
// clang-format on
} // namespace commonPreferences
} // namespace vlm

#endif
