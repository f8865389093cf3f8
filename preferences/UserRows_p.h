#ifndef PREFERENCES_USERROWS_P_H
#define PREFERENCES_USERROWS_P_H

#include "preferences/DeleteTiming_p.h"
#include "preferences/Preferences_p.h"

// The document of the preferences of one user: a row for each.
namespace vlm
{
namespace userPreferences
{
const char kFileName[] = "repostry_private.xml";
const char kRoot[] = "repostry";

const char kPageInfo[] = "pageInfo";
const char kZoom[] = "Zoom";
const char kBlankPage[] = "about:blank";

const int kMaxUrlBytes = 256;
const int kMaxFontBytes = 256;

// One row per preference; clang-format would fold them into columns.
// clang-format off
constexpr FlagEntry kStartup = {kPageInfo, "startup", "lastpage", "homepage", 0, OnlyOneIsOn};

// A page without text reads as the blank one, a font without text as no font.
constexpr TextEntry kHome = {kPageInfo, "home", kMaxUrlBytes, kBlankPage, EmptyIsFallback};
constexpr TextEntry kLastPage = {kPageInfo, "lastPageURL", kMaxUrlBytes,
                                 kBlankPage, EmptyIsFallback};
constexpr TextEntry kFontName = {"font", "fontName", kMaxFontBytes, "", EmptyIsKept};

constexpr DeleteTimingEntry kCookieDeleteTiming = {"cookie", "cookieDeleteTiming"};
constexpr DeleteTimingEntry kAuthInfoDeleteTiming = {"authInfo", "authInfoDeleteTiming"};
// clang-format on

// The text of zoom code n stands at index n - 1.
const char *const kZoomTexts[] = {"0.5", "0.6", "0.7", "0.8", "0.9", "1.0",
                                  "1.1", "1.2", "1.3", "1.4", "1.5"};
const int kZoomCount = int(sizeof kZoomTexts / sizeof kZoomTexts[0]);
const short kFullSize = 6;
} // namespace userPreferences
} // namespace vlm

#endif
