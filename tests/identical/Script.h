#ifndef SCRIPT_H
#define SCRIPT_H

#include "tests/identical/Documents.h"
#include "tests/identical/Draw.h"
#include "tests/identical/Transcript.h"

#include <functional>

// What is played with each store: files of every kind loaded and saved again, and changes by the
// hundred. One source each.
void playNodes();
void playTexts();
void playCommonPreferences();
void playUserPreferences();
void playBookmarks();
void playThumbnails();
void playHistory();
void playCookies();
void playCredentials();
void playFonts();
/// What Qt 4.8 does not do as later versions do; each case says what.
void playDifferences();
/// What the library never writes, and Qt reads in more than these two ways.
void playForeign();

/// Has load print what becomes of each variant of the document, written to the file of this name in
/// a folder of its own, and shows that folder and the log.
void playDocuments(const char *fileName, const QByteArray &document,
                   const std::function<void(QString &folder)> &load);

/// A cookie as a server sends it, through the file of the engine and the document and back.
void playRawForm(const char *form);
/// An entry with this element, made a cookie.
void playCookieEntry(const char *element);
/// What others left in the place of the engine's file.
void playCookieIni(const char *bytes);

/// The zone of all local times to come, as rules, so that no zone data need be installed.
void setZone(const char *zone);
extern const char kWorldTime[];
extern const char kSummerTime[];

/// Takes so many steps, which print what they do, a part per 25; after each part save is called,
/// and the folder it saved to is shown.
void playSteps(const char *store, int parts, const std::function<void()> &step,
               const std::function<void(QString &folder)> &save);

#endif
