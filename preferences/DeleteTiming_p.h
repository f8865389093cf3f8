#ifndef PREFERENCES_DELETETIMING_P_H
#define PREFERENCES_DELETETIMING_P_H

class VLMC_XMLSetting;

// When stored cookies, credentials and cache files are deleted: never (code 0) or at a change of
// the user (codes 1 to 3, written alike and read as 3). Not a switch: more words are read than are
// written.
namespace vlm
{
const char kNeverDelete = 0;
const char kDeleteAtUserChange = 3;

const char kChangeUser[] = "changeUser";
const char kNotDelete[] = "notDelete";
// Written by older versions, read like "changeUser".
const char kLogout[] = "logout";
const char kTimeout[] = "timeout";

struct DeleteTimingEntry {
    const char *group;
    const char *element;
};

// Fallback is what a missing element and a document without root read as; a damaged text reads as
// kNeverDelete whatever the fallback.
char readDeleteTiming(VLMC_XMLSetting &store, const DeleteTimingEntry &entry, char fallback);
void writeDeleteTiming(VLMC_XMLSetting &store, const DeleteTimingEntry &entry, char code);
// Loading: writes the code when the element is missing.
void completeDeleteTiming(VLMC_XMLSetting &store, const DeleteTimingEntry &entry, char code);

// True when the element exists and holds anything but "changeUser", an old word included.
bool isOtherThanChangeUser(VLMC_XMLSetting &store, const DeleteTimingEntry &entry);
// Replaces "changeUser" by the old word "logout"; any other text stays.
void convertToOldWord(VLMC_XMLSetting &store, const DeleteTimingEntry &entry);
} // namespace vlm

#endif
