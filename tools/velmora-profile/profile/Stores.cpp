#include "tools/velmora-profile/profile/Stores.h"

#include "core/DocumentRoot_p.h"
#include "core/VLMC_XMLWriter.h"
#include "files/DocumentSink_p.h"
#include "tools/velmora-profile/output/Console.h"
#include "tools/velmora-profile/output/Guards.h"
#include "tools/velmora-profile/profile/Refusals.h"
#include "tools/velmora-profile/profile/Secrets.h"

#include <memory>

namespace
{
using namespace profile;

// What a save of the store writes; empty for more than it writes at most.
QByteArray contentOf(VLMC_XMLSetting *store)
{
    vlm::DocumentSink copy;
    VLMC_XMLWriter writer;
    const bool isWhole = writer.write(copy, store->getXMLRootNode()) && !copy.isTooLarge();
    return isWhole ? copy.document() : QByteArray();
}
} // namespace

int profile::loadStore(DocumentKind kind)
{
    QString folder = text(kProfileFolder);
    if (refuseToRewrite(Document(kind, folder)) != Done) {
        return Failed;
    }
    documentType(kind).load(&folder);
    return Done;
}

int profile::saveStore(DocumentKind kind)
{
    const DocumentType &type = documentType(kind);
    const Uninterrupted uninterrupted;
    const std::unique_ptr<OwnerOnly> ownerOnly(mayHoldSecrets(text(type.fileName)) ? new OwnerOnly
                                                                                   : nullptr);
    // As its save does.
    if (type.entryName) {
        vlm::nameRoot(*type.store()->getXMLRootNode(), type.rootName);
    }
    if (type.prepare) {
        type.prepare();
    }
    const QByteArray content = contentOf(type.store());
    QString folder = text(kProfileFolder);
    type.save(&folder);
    if (!content.isEmpty() && Document(kind, folder).content() == content) {
        return Done;
    }
    return fail(
        text("%1 could not be written correctly; check the free space and the folder's permissions")
            .arg(text(type.fileName)));
}
