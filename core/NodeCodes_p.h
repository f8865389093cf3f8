#ifndef CORE_NODECODES_P_H
#define CORE_NODECODES_P_H

namespace vlm
{
// How a node's text is written, and where among its siblings a new node goes: the char codes that
// the operations of nodes and stores take.
const char PlainText = 0;
const char CDataText = 1;
const char AtEnd = 0;
const char AtFront = 1;
} // namespace vlm

#endif
