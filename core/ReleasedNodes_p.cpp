#include "core/ReleasedNodes_p.h"

vlm::ReleasedNodes::~ReleasedNodes()
{
    const QVector<QPointer<VLMC_XMLNode>> &nodes = m_nodes;
    for (const QPointer<VLMC_XMLNode> &node : nodes) {
        delete node.data();
    }
}

void vlm::ReleasedNodes::add(VLMC_XMLNode *node)
{
    if (node->thread() == thread()) {
        m_nodes.append(node);
    } else {
        node->deleteLater();
    }
}
