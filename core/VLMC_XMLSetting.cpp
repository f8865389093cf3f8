#include "core/VLMC_XMLSetting.h"

#include "core/Erasures_p.h"
#include "core/NodeCodes_p.h"
#include "core/NodeView_p.h"
#include "core/Numbering_p.h"
#include "core/VLMC_XMLReader.h"
#include "core/VLMC_XMLWriter.h"
#include "core/VLMG_Debug.h"
#include "files/PartialLoads_p.h"
#include "files/ReplaceFile_p.h"

namespace
{
// What "0x%X" prints of a pointer: on the device all of it, on a 64-bit host its lower half.
unsigned int addressOf(const VLMC_XMLNode *node)
{
    return static_cast<unsigned int>(reinterpret_cast<quintptr>(node));
}

void release(VLMC_XMLNode *node)
{
    if (node) {
        node->deleteLater();
    }
}

// True for most elements of one name, which share it, without comparing characters.
bool isOneString(const QString &left, const QString &right)
{
    return left.constData() == right.constData() && left.size() == right.size();
}

// Replaces the file, whole or not, without keeping anything of it. Nothing is erased before the new
// document stands.
bool saveErased(QString &path, VLMC_XMLNode *root)
{
    const bool isPartial = vlm::PartialLoads::contains(path);
    vlm::PartialLoads::remove(path);
    VLMC_XMLWriter writer;
    if (writer.write(path, root)) {
        vlm::ReplaceFile::removeKept(path);
        return true;
    }
    if (isPartial) {
        vlm::PartialLoads::add(path);
    }
    return false;
}
} // namespace

VLMC_XMLSetting::VLMC_XMLSetting() : root(nullptr) {}

VLMC_XMLSetting::~VLMC_XMLSetting()
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_XMLSetting::~VLMC_XMLSetting] 0x%X", addressOf(root));
    vlm::Erasures::destroyed(*this);
    release(root);
    root = nullptr;
}

// The two messages say loadBookmark for every store; log readers know them that way.
void VLMC_XMLSetting::load(QString &path)
{
    if (path.isEmpty()) {
        VLMG_DebugPrint(VLMG_LogWarning, "[VLMC_XMLSetting::load] Path is NULL or empty.");
        return;
    }
    // At once, unlike everywhere else.
    delete root;
    root = nullptr;
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_XMLSetting::loadBookmark] start");
    VLMC_XMLReader reader;
    root = reader.read(path);
    vlm::Erasures::loaded(*this, path);
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_XMLSetting::loadBookmark] end");
}

// The last message says saveBookmark for every store; log readers know it that way.
void VLMC_XMLSetting::save(QString &path)
{
    if (path.isEmpty()) {
        VLMG_DebugPrint(VLMG_LogWarning, "[VLMC_XMLSetting::save] Path is NULL or empty.");
        return;
    }
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_XMLSetting::save] start");
    if (!vlm::Erasures::reach(*this, root, path)) {
        VLMC_XMLWriter writer;
        writer.write(path, root);
    } else if (saveErased(path, root)) {
        vlm::Erasures::saved(*this);
    }
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_XMLSetting::saveBookmark] end");
}

int VLMC_XMLSetting::getXMLRootNodeChildCntByName(QString &attributeName, QString &name)
{
    if (!root) {
        return 0;
    }
    const QList<VLMC_XMLNode *> children =
        vlm::NodeView::childrenByNumber(*root, attributeName, getXMLNodeCnt());
    int found = 0;
    const QString *same = &name;
    for (VLMC_XMLNode *const child : children) {
        if (child
            && (isOneString(vlm::NodeView::name(*child), *same)
                || vlm::NodeView::name(*child) == name)) {
            same = &vlm::NodeView::name(*child);
            ++found;
        }
    }
    return found;
}

void VLMC_XMLSetting::setIDforChildren(QString &attributeName)
{
    if (!root) {
        return;
    }
    const int nulls = vlm::NodeView::numberChildren(*root, attributeName);
    for (int i = 0; i < nulls; ++i) {
        VLMG_DebugPrint(VLMG_LogError, "[VLMC_XMLSetting::setIDforChildren] 0x%X Why Pass??",
                        addressOf(root));
    }
}

void VLMC_XMLSetting::deleteXMLNodeByID(int id, QString &attributeName)
{
    if (!root) {
        return;
    }
    VLMC_XMLNode *const child = root->getXMLNodeChildByID(id, attributeName);
    root->removeXMLNode(child);
    release(child);
}

void VLMC_XMLSetting::deleteAllXMLNode()
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_XMLSetting::deleteAllXMLNode] 0x%X", addressOf(root));
    if (root) {
        vlm::Erasures::erased(*this, createXMLRootNode());
    }
}

// The messages say deleteRootChildren; log readers know them that way.
void VLMC_XMLSetting::deleteAllSetting()
{
    VLMG_DebugPrint(VLMG_LogTrace, "[VLMC_XMLSetting::deleteRootChildren] 0x%X", addressOf(root));
    if (!root) {
        return;
    }
    vlm::Erasures::erased(*this, root);
    const int nulls = vlm::NodeView::releaseChildren(*root);
    for (int i = 0; i < nulls; ++i) {
        VLMG_DebugPrint(VLMG_LogError, "[VLMC_XMLSetting::deleteRootChildren] 0x%X Why Pass??",
                        addressOf(root));
    }
}

VLMC_XMLNode *VLMC_XMLSetting::addXMLChild(VLMC_XMLNode *parent, QString &name, QString &text,
                                           char &textType, QXmlStreamAttributes &attributes,
                                           char prepend)
{
    VLMC_XMLNode *const node = new (std::nothrow) VLMC_XMLNode(parent, prepend);
    if (!node) {
        VLMG_DebugPrint(VLMG_LogError, "[VLMC_XMLSetting::addXMLChild] Fail");
        return nullptr;
    }
    node->setName(name);
    node->setText(text);
    node->setTextType(textType);
    node->setAttribute(attributes);
    return node;
}

VLMC_XMLNode *VLMC_XMLSetting::createXMLRootNode()
{
    release(root);
    root = new VLMC_XMLNode(nullptr, vlm::AtEnd);
    return root;
}

VLMC_XMLNode *VLMC_XMLSetting::getXMLRootNode() { return root; }

int VLMC_XMLSetting::getXMLNodeCnt()
{
    return root ? int(vlm::NodeView::children(*root).size()) : 0;
}

VLMC_XMLNode *VLMC_XMLSetting::getChildNode(QString name)
{
    return root->getXMLNodeChildByName(name);
}

VLMC_XMLNode *VLMC_XMLSetting::getGrandchildNode(QString childName, QString grandchildName)
{
    VLMC_XMLNode *const child = root->getXMLNodeChildByName(childName);
    return child ? child->getXMLNodeChildByName(grandchildName) : nullptr;
}

VLMC_XMLNode *VLMC_XMLSetting::setElement(VLMC_XMLNode *parent, QString name, QString text,
                                          QXmlStreamAttributes attributes, char textType,
                                          char prepend)
{
    if (!parent) {
        return nullptr;
    }
    VLMC_XMLNode *const child = parent->getXMLNodeChildByName(name);
    if (!child) {
        return VLMC_XMLSetting::addXMLChild(parent, name, text, textType, attributes, prepend);
    }
    child->setTextType(textType);
    child->setText(text);
    return child;
}
