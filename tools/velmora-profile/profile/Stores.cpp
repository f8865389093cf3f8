#include "tools/velmora-profile/profile/Stores.h"

#include "core/DocumentBuffer_p.h"
#include "core/VLMC_XMLWriter.h"
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
    vlm::DocumentBuffer copy;
    VLMC_XMLWriter writer;
    const bool isWhole = writer.write(copy, store->getXMLRootNode()) && !copy.isTooLarge();
    return isWhole ? copy.document() : QByteArray();
}
} // namespace

int profile::loadStore(DocumentKind kind)
{
    QString folder = text(kHere);
    if (refuseToRewrite(Document(kind, folder)) != Done) {
        return Failed;
    }
    documentType(kind).load(&folder);
    return Done;
}

void profile::nameRoot(const DocumentType &type)
{
    VLMC_XMLNode *const root = type.store()->getXMLRootNode();
    QString name = text(type.rootName);
    QXmlStreamAttributes attributes;
    attributes.append(text("docInfo"), text("1.0"));
    root->setName(name);
    root->setAttribute(attributes);
}

int profile::saveStore(DocumentKind kind)
{
    const DocumentType &type = documentType(kind);
    const Uninterrupted uninterrupted;
    const std::unique_ptr<OwnerOnly> ownerOnly(mayHoldSecrets(text(type.fileName)) ? new OwnerOnly
                                                                                   : nullptr);
    // As its save does.
    if (type.entryName) {
        nameRoot(type);
    }
    if (type.prepare) {
        type.prepare();
    }
    const QByteArray content = contentOf(type.store());
    QString folder = text(kHere);
    type.save(&folder);
    if (!content.isEmpty() && Document(kind, folder).content() == content) {
        return Done;
    }
    return fail(text("%1 could not be written as it should be; look at the space and the "
                     "permissions of the folder")
                    .arg(text(type.fileName)));
}
