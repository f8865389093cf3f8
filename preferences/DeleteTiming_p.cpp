#include "preferences/DeleteTiming_p.h"

#include "core/QEXC_TextCodec.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLSetting.h"
#include "preferences/Preferences_p.h"

namespace
{
bool holds(VLMC_XMLNode *element, const char *word)
{
    return element->getText() == QEXC_TextCodec::fromSJIS(word);
}
} // namespace

char vlm::readDeleteTiming(VLMC_XMLSetting &store, const DeleteTimingEntry &entry, char fallback)
{
    VLMC_XMLNode *const stored = storedElement(store, entry.group, entry.element);
    if (!stored) {
        return fallback;
    }
    const bool atUserChange =
        holds(stored, kLogout) || holds(stored, kTimeout) || holds(stored, kChangeUser);
    return atUserChange ? kDeleteAtUserChange : kNeverDelete;
}

void vlm::writeDeleteTiming(VLMC_XMLSetting &store, const DeleteTimingEntry &entry, char code)
{
    const bool atUserChange = code >= 1 && code <= kDeleteAtUserChange;
    writeWord(store, ensureGroup(store, entry.group), entry.element,
              atUserChange ? kChangeUser : kNotDelete);
}

void vlm::completeDeleteTiming(VLMC_XMLSetting &store, const DeleteTimingEntry &entry, char code)
{
    if (!storedElement(store, entry.group, entry.element)) {
        writeDeleteTiming(store, entry, code);
    }
}

bool vlm::isOtherThanChangeUser(VLMC_XMLSetting &store, const DeleteTimingEntry &entry)
{
    VLMC_XMLNode *const stored = storedElement(store, entry.group, entry.element);
    return stored && !holds(stored, kChangeUser);
}

void vlm::convertToOldWord(VLMC_XMLSetting &store, const DeleteTimingEntry &entry)
{
    VLMC_XMLNode *const stored = storedElement(store, entry.group, entry.element);
    if (stored && holds(stored, kChangeUser)) {
        writeWord(store, ensureGroup(store, entry.group), entry.element, kLogout);
    }
}
