#ifndef FILES_ATTRIBUTEBOUND_P_H
#define FILES_ATTRIBUTEBOUND_P_H

#include <QtCore/QtGlobal>

namespace vlm
{
// A parser compares each attribute of a tag with each other one: 1 MB of them take it 20 seconds.
const int kMaxAttributes = 256;

// Counts the attributes of each tag in the bytes of a document, in UTF-8 or any encoding that
// writes markup with the same bytes; zero bytes, which UTF-16 has in between, do not count.
class AttributeBound
{
public:
    AttributeBound();

    // How many of the next bytes come before a tag has more than kMaxAttributes; all of them as a
    // rule.
    qint64 within(const char *data, qint64 size);

private:
    enum State { Text, Open, Tag, Value, Special, Comment, CData, Instruction, Declaration, Name };

    bool exceeds(char byte);
    void open(char byte);
    void special(char byte);
    void declaration(char byte);
    void until(char beforeEnd, char byte);
    bool tag(char byte);

    State m_state;
    int m_attributes;
    int m_specialBytes;
    char m_quote;
    // The two bytes before.
    char m_last;
    char m_secondLast;
};
} // namespace vlm

#endif
