#ifndef FILES_DOCUMENTSINK_P_H
#define FILES_DOCUMENTSINK_P_H

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>

namespace vlm
{
// More than any settings document needs, and little enough to hold in memory. Indentation makes a
// document grow with the square of its depth: without a limit a file of 175 KB, read and saved
// again, would take all memory.
const qint64 kMaxDocumentBytes = qint64(256) * 1024 * 1024;

// A document on its way to a file. Takes the writer's many small pieces faster than a QBuffer.
class DocumentSink : public QIODevice
{
public:
    DocumentSink() : m_isTooLarge(false) { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

    bool isSequential() const override { return true; }
    bool isTooLarge() const { return m_isTooLarge; }
    const QByteArray &document() const { return m_document; }

protected:
    qint64 readData(char *, qint64) override { return -1; }

    qint64 writeData(const char *data, qint64 bytes) override
    {
        m_isTooLarge = m_isTooLarge || m_document.size() + bytes > kMaxDocumentBytes;
        if (m_isTooLarge) {
            return -1;
        }
        m_document.append(data, int(bytes));
        return bytes;
    }

private:
    QByteArray m_document;
    bool m_isTooLarge;
};
} // namespace vlm

#endif
