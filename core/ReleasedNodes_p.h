#ifndef CORE_RELEASEDNODES_P_H
#define CORE_RELEASEDNODES_P_H

#include "core/VLMC_XMLNode.h"

#include <QtCore/QPointer>
#include <QtCore/QVector>

namespace vlm
{
// Nodes that nobody owns any more, which the event loop destroys together. Releasing each with an
// event of its own would cost as much as reading its element from a file.
class ReleasedNodes : public QObject
{
public:
    ReleasedNodes() {}
    ~ReleasedNodes() override;

    void reserve(int nodes) { m_nodes.reserve(nodes); }

    // Like node's own deleteLater(), once this object's deleteLater() has been called.
    void add(VLMC_XMLNode *node);

private:
    // Somebody who still has a node may destroy it.
    QVector<QPointer<VLMC_XMLNode>> m_nodes;
};
} // namespace vlm

#endif
