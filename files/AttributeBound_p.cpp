#include "files/AttributeBound_p.h"

#include <cstring>

namespace
{
// What follows "<!" in a section of characters.
const char kCData[] = "[CDATA[";
const int kCDataBytes = int(sizeof kCData) - 1;
} // namespace

vlm::AttributeBound::AttributeBound()
    : m_state(Text),
      m_attributes(0),
      m_specialBytes(0),
      m_quote('\0'),
      m_last('\0'),
      m_secondLast('\0')
{
}

qint64 vlm::AttributeBound::within(const char *data, qint64 size)
{
    for (qint64 i = 0; i < size; ++i) {
        if (m_state == Text) {
            const void *const found = memchr(data + i, '<', size_t(size - i));
            if (!found) {
                return size;
            }
            i = static_cast<const char *>(found) - data;
        }
        if (data[i] != '\0' && exceeds(data[i])) {
            return i;
        }
    }
    return size;
}

bool vlm::AttributeBound::exceeds(char byte)
{
    switch (m_state) {
    case Text:
        m_state = byte == '<' ? Open : Text;
        break;
    case Open:
        open(byte);
        break;
    case Tag:
        return tag(byte);
    case Value:
        m_state = byte == m_quote ? Tag : Value;
        break;
    case Special:
        special(byte);
        break;
    case Comment:
        until('-', byte);
        break;
    case CData:
        until(']', byte);
        break;
    case Instruction:
        m_state = byte == '>' && m_last == '?' ? Text : Instruction;
        m_last = byte;
        break;
    case Declaration:
        declaration(byte);
        break;
    case Name:
        m_state = byte == m_quote ? Declaration : Name;
        break;
    }
    return false;
}

void vlm::AttributeBound::open(char byte)
{
    m_attributes = 0;
    m_specialBytes = 0;
    m_last = '\0';
    m_secondLast = '\0';
    m_state = byte == '!' ? Special : byte == '?' ? Instruction : byte == '>' ? Text : Tag;
}

// Each value is in quotes, which a name cannot contain.
bool vlm::AttributeBound::tag(char byte)
{
    if (byte == '"' || byte == '\'') {
        m_quote = byte;
        m_state = Value;
        return ++m_attributes > kMaxAttributes;
    }
    m_state = byte == '>' ? Text : Tag;
    return false;
}

void vlm::AttributeBound::special(char byte)
{
    if (m_specialBytes < 2 && byte == '-') {
        m_state = ++m_specialBytes == 2 && m_last == '-' ? Comment : Special;
        m_last = m_state == Comment ? '\0' : byte;
        return;
    }
    if (m_last == '\0' && byte == kCData[m_specialBytes]) {
        m_state = ++m_specialBytes == kCDataBytes ? CData : Special;
        return;
    }
    m_state = Declaration;
    declaration(byte);
}

// In "[" and "]" a document type has declarations of its own, each in "<" and ">".
void vlm::AttributeBound::declaration(char byte)
{
    if (byte == '"' || byte == '\'') {
        m_quote = byte;
        m_state = Name;
    } else if (byte == '>' || byte == '[') {
        m_state = Text;
    }
}

void vlm::AttributeBound::until(char beforeEnd, char byte)
{
    if (byte == '>' && m_last == beforeEnd && m_secondLast == beforeEnd) {
        m_state = Text;
    }
    m_secondLast = m_last;
    m_last = byte;
}
