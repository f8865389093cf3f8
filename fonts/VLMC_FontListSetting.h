#ifndef VLMC_FONTLISTSETTING_H
#define VLMC_FONTLISTSETTING_H

#include "core/VLMC_XMLSetting.h"

/**
 * The fonts that the browser offers, kept in "fontlist.xml" in a directory that the caller names.
 * Fonts are addressed by index, their position in the list. Changes stay in memory until
 * saveFontList. Directories end with "/": the file name is appended as it stands. Used from one
 * thread, which runs an event loop.
 */
class VLM_EXPORT VLMC_FontListSetting : public VLMC_XMLSetting
{
public:
    /// The one list of the process, created on the first call and destroyed at exit.
    static VLMC_FontListSetting *getInstance();

    VLMC_FontListSetting();

    /// Replaces the list by the one in the directory; a missing file gives an empty list. An empty
    /// directory is refused with a warning in the log and changes nothing.
    void loadFontList(QString directory);
    /// The number of fonts; 0 before the first load.
    int getCount();
    /// The name of the font at this index. Empty when there is none and when the name is longer
    /// than 256 bytes of UTF-8.
    QString getFont(int index);
    /// Appends a font of any length, even one that is listed already. An empty name is refused with
    /// a warning in the log. Before the first load there is no list and nothing is kept.
    void addFont(QString name);
    /// Writes the list into the directory; before the first load no file is touched. An empty
    /// directory is refused with a warning in the log.
    void saveFontList(QString directory);
};

#endif
