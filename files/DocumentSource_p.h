#ifndef FILES_DOCUMENTSOURCE_P_H
#define FILES_DOCUMENTSOURCE_P_H

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QIODevice>
#include <QtCore/QXmlStreamReader>

namespace vlm
{
// Characters in the attributes that a document declares for elements without them, all elements but
// the root together: a reader stops past them. One declaration would otherwise fill as much memory
// as there are elements.
const int kMaxDefaulted = 4096;

// Characters that a start tag has not from itself but from a declaration.
int defaultedSize(const QXmlStreamAttributes &attributes);

// The document's encoding, which is known while the reader stands at the start of the document
// only.
bool isUtf8(const QXmlStreamReader &reader);

// What the reader gets to see of a device: no more than it holds at the start, and no more than
// 4,096 characters out of declared entities, all their uses together. Past either bound the
// document just ends. Qt 4.8 has no bound of its own, later versions one for each single use.
//
// References are counted in the bytes on their way to the parser, since one token may already be
// made of any number of them. A declaration is recognised in the bytes too, and from there on the
// parser gets single bytes, so that it reports the document type before it has seen a use.
class DocumentSource : public QIODevice
{
public:
    // Lives as long as the device, as a reader may ask it for its end any time.
    explicit DocumentSource(QIODevice *device);

    // The reader has met a document type.
    void declare(const QXmlStreamEntityDeclarations &entities, bool isUtf8);
    // The reader has met an element: what looks like a declaration from here on is text.
    void endProlog();

    bool isSequential() const override;
    bool atEnd() const override;

protected:
    qint64 readData(char *data, qint64 size) override;
    qint64 writeData(const char *data, qint64 size) override;

private:
    enum State { Prolog, Declarations, Counting, Plain };

    qint64 fetch(char *data, qint64 size);
    qint64 upToDeclaration(char *data, qint64 size);
    qint64 declarationIn(const char *data, qint64 size);
    qint64 declarationAmongZeros(const char *data, qint64 size);
    qint64 declarationByte(char byte);
    qint64 upToBound(const char *data, qint64 size);
    bool exceedsBound(char byte);
    bool endsWith(const char *text) const;
    void remember(char byte);
    qint64 end();

    QIODevice *m_device;
    // Bytes the device may still give; below 0 is no bound.
    qint64 m_left;
    QByteArray m_held;
    QByteArray m_recent;
    QHash<QByteArray, int> m_entities;
    int m_largest;
    int m_expanded;
    int m_declarationBytes;
    State m_state;
    bool m_ended;
};
} // namespace vlm

#endif
