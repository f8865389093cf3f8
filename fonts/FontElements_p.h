#ifndef FONTS_FONTELEMENTS_P_H
#define FONTS_FONTELEMENTS_P_H

// The document of the fonts.
namespace vlm
{
namespace fonts
{
const char kFileName[] = "fontlist.xml";
const char kRoot[] = "fontlist";
const char kEntry[] = "font";

// Bytes of UTF-8.
const int kMaxNameBytes = 256;
} // namespace fonts
} // namespace vlm

#endif
