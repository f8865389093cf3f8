#ifndef COOKIES_COOKIEELEMENTS_P_H
#define COOKIES_COOKIEELEMENTS_P_H

// The document of the cookies, and the file of the engine that it is converted from and to.
namespace vlm
{
namespace cookies
{
const char kRoot[] = "cookie";
const char kEntry[] = "webSiteInfo";
const char kWebsite[] = "website";
const char kName[] = "name";
const char kPath[] = "path";
const char kSecure[] = "secure";
const char kExpires[] = "expires";
const char kContents[] = "contents";

// The words of kSecure.
const char kTrue[] = "true";
const char kFalse[] = "false";

// Entries that a conversion looks at; those behind them stay untouched.
const int kMaxConverted = 20;

const char kIniFileName[] = "cookie.ini";
const char kIniGroup[] = "Cookie";
const char kIniKey[] = "cookies";
// Of the copy that stands beside the file while it is written.
const char kIniCopySuffix[] = ".rollback";

// Far above anything real. What is larger counts as unreadable.
const int kMaxIniBytes = 16 * 1024 * 1024;
const int kMaxIniCookies = 20000;
} // namespace cookies
} // namespace vlm

#endif
