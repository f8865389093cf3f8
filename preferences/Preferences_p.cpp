#include "preferences/Preferences_p.h"

#include "core/Entries_p.h"
#include "core/QEXC_TextCodec.h"
#include "core/VLMC_XMLNode.h"
#include "core/VLMC_XMLSetting.h"
#include "text/Utf8_p.h"

namespace
{
bool isOn(const vlm::FlagEntry &entry, char code)
{
    return entry.rule == vlm::OnlyOneIsOn ? code == 1 : code != 0;
}

bool isReadable(const vlm::TextEntry &entry, const QString &text)
{
    if (text.isEmpty() && entry.emptyText == vlm::EmptyIsFallback) {
        return false;
    }
    return vlm::fitsUtf8(text, entry.maxUtf8Bytes);
}

// The store's addXMLChild without attributes, at the end; null for a null parent.
VLMC_XMLNode *setElementText(VLMC_XMLSetting &store, VLMC_XMLNode *parent, const char *name,
                             const QString &text, char textType)
{
    return store.setElement(parent, QEXC_TextCodec::fromSJIS(name), text, QXmlStreamAttributes(),
                            textType, vlm::AtEnd);
}
} // namespace

// The look-up requires a root.
VLMC_XMLNode *vlm::storedElement(VLMC_XMLSetting &store, const char *group, const char *element)
{
    if (!store.getXMLRootNode()) {
        return nullptr;
    }
    return store.getGrandchildNode(QEXC_TextCodec::fromSJIS(group),
                                   QEXC_TextCodec::fromSJIS(element));
}

VLMC_XMLNode *vlm::ensureGroup(VLMC_XMLSetting &store, const char *group)
{
    return setElementText(store, store.getXMLRootNode(), group, QString(), PlainText);
}

void vlm::writeElement(VLMC_XMLSetting &store, VLMC_XMLNode *group, const char *element,
                       const QString &text, char textType)
{
    setElementText(store, group, element, text, textType);
}

void vlm::writeWord(VLMC_XMLSetting &store, VLMC_XMLNode *group, const char *element,
                    const char *word)
{
    writeElement(store, group, element, QEXC_TextCodec::fromSJIS(word), PlainText);
}

char vlm::readFlag(VLMC_XMLSetting &store, const FlagEntry &entry)
{
    VLMC_XMLNode *const stored = storedElement(store, entry.group, entry.element);
    const char *const otherWord = entry.fallback ? entry.offWord : entry.onWord;
    if (!stored || stored->getText() != QEXC_TextCodec::fromSJIS(otherWord)) {
        return entry.fallback;
    }
    return entry.fallback ? 0 : 1;
}

void vlm::writeFlag(VLMC_XMLSetting &store, const FlagEntry &entry, char code)
{
    writeFlagIn(store, ensureGroup(store, entry.group), entry, code);
}

void vlm::writeFlagIn(VLMC_XMLSetting &store, VLMC_XMLNode *group, const FlagEntry &entry,
                      char code)
{
    writeWord(store, group, entry.element, isOn(entry, code) ? entry.onWord : entry.offWord);
}

void vlm::readText(VLMC_XMLSetting &store, const TextEntry &entry, QString *text)
{
    if (!text || !store.getXMLRootNode()) {
        return;
    }
    VLMC_XMLNode *const stored = storedElement(store, entry.group, entry.element);
    *text = stored && isReadable(entry, stored->getText())
                ? stored->getText()
                : QEXC_TextCodec::fromSJIS(entry.fallback);
}

int vlm::writeText(VLMC_XMLSetting &store, const TextEntry &entry, const QString &text)
{
    // Before the group is touched: a refused value changes nothing.
    if (!fitsUtf8(text, entry.maxUtf8Bytes)) {
        return 0;
    }
    VLMC_XMLNode *const group = ensureGroup(store, entry.group);
    writeElement(store, group, entry.element, text, PlainText);
    return group ? 1 : 0;
}

void vlm::readBytes(VLMC_XMLSetting &store, const BytesEntry &entry, QByteArray *bytes)
{
    if (!bytes || !store.getXMLRootNode()) {
        return;
    }
    VLMC_XMLNode *const stored = storedElement(store, entry.group, entry.element);
    *bytes = stored ? QByteArray::fromBase64(stored->getText().toUtf8()) : QByteArray();
    if (bytes->size() > entry.maxBytes) {
        *bytes = QByteArray();
    }
}

int vlm::writeBytes(VLMC_XMLSetting &store, const BytesEntry &entry, const QByteArray &bytes)
{
    // Before the group is touched: a refused value changes nothing.
    if (bytes.size() > entry.maxBytes) {
        return 0;
    }
    VLMC_XMLNode *const group = ensureGroup(store, entry.group);
    const QByteArray encoded = bytes.toBase64();
    writeElement(store, group, entry.element, QString::fromLatin1(encoded.constData()), CDataText);
    return group ? 1 : 0;
}

void vlm::claimRoot(VLMC_XMLSetting &store, const char *name)
{
    VLMC_XMLNode *const root = store.getXMLRootNode();
    if (root && root->getName() != QEXC_TextCodec::fromSJIS(name)) {
        nameRoot(store, name);
    }
}

void vlm::complete(VLMC_XMLSetting &store, const FlagEntry &entry)
{
    if (!storedElement(store, entry.group, entry.element)) {
        writeFlag(store, entry, entry.fallback);
    }
}

void vlm::complete(VLMC_XMLSetting &store, const TextEntry &entry)
{
    if (!storedElement(store, entry.group, entry.element)) {
        writeText(store, entry, QEXC_TextCodec::fromSJIS(entry.fallback));
    }
}

void vlm::complete(VLMC_XMLSetting &store, const BytesEntry &entry)
{
    if (!storedElement(store, entry.group, entry.element)) {
        writeBytes(store, entry, QByteArray());
    }
}
