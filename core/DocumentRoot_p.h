#ifndef CORE_DOCUMENTROOT_P_H
#define CORE_DOCUMENTROOT_P_H

#include "core/QEXC_TextCodec.h"
#include "core/VLMC_XMLNode.h"

namespace vlm
{
// What the root of every document has: docInfo="1.0".
inline QXmlStreamAttributes rootAttributes()
{
    QXmlStreamAttributes attributes;
    attributes.append(QEXC_TextCodec::fromSJIS("docInfo"), QEXC_TextCodec::fromSJIS("1.0"));
    return attributes;
}

// Names a root and leaves it with these attributes.
inline void nameRoot(VLMC_XMLNode &root, const char *name)
{
    QString rootName = QEXC_TextCodec::fromSJIS(name);
    root.setName(rootName);
    QXmlStreamAttributes attributes = rootAttributes();
    root.setAttribute(attributes);
}
} // namespace vlm

#endif
