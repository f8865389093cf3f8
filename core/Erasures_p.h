#ifndef CORE_ERASURES_P_H
#define CORE_ERASURES_P_H

class QString;
class VLMC_XMLNode;
class VLMC_XMLSetting;

namespace vlm
{
// Which stores were emptied, as a user empties them, since they loaded their document: a save to
// the file it came from then keeps nothing of it. Held outside the stores, whose fields are fixed.
// May be used from any thread.
class Erasures
{
public:
    // The store's document is now the one at path, and nothing of it is erased.
    static void loaded(const VLMC_XMLSetting &store, const QString &path);
    // All that was loaded is erased; what the store has from here on is under this root.
    static void erased(const VLMC_XMLSetting &store, const VLMC_XMLNode *root);
    // Whether what is under this root replaces, at path, a document that was erased.
    static bool reach(const VLMC_XMLSetting &store, const VLMC_XMLNode *root, const QString &path);
    // The erasure is on the disk.
    static void saved(const VLMC_XMLSetting &store);
    static void destroyed(const VLMC_XMLSetting &store);
};

// While one lives, this thread empties stores only to fill them again: that erases nothing.
class NoErasure
{
public:
    NoErasure();
    ~NoErasure();
    NoErasure(const NoErasure &) = delete;
    NoErasure &operator=(const NoErasure &) = delete;
};
} // namespace vlm

#endif
