#ifndef FILES_DOCUMENTSOURCE_P_H
#define FILES_DOCUMENTSOURCE_P_H

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QIODevice>
#include <QtCore/QXmlStreamReader>

namespace vlm
{
// Characters in the attributes that a document declares for elements without them, all elements but
// the root together: a reader stops past them. Otherwise one declaration takes memory for every
// element.
const int kMaxDefaulted = 4096;

// Characters that a start tag has only from a declaration.
int defaultedSize(const QXmlStreamAttributes &attributes);

// The document's encoding, which is known while the reader stands at the start of the document
// only.
bool isUtf8(const QXmlStreamReader &reader);

// What the reader sees of a device: no more than it holds at the start, and no more than 4,096
// characters from declared entities, all uses together. Past either limit the document just ends.
// Qt 4.8 has no limit of its own, later versions one for each use.
//
// References are counted in the bytes on their way to the parser, since one token may contain any
// number of them. A declaration is recognised in the bytes too; from there on the parser gets
// single bytes, so that it reports the document type before it has seen a use.
class DocumentSource : public QIODevice
{
public:
    // Lives as long as the device, because a reader may ask it for its end at any time.
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
    // Bytes that the device may still give; negative for no limit.
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
