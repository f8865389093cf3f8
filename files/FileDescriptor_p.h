#ifndef FILES_FILEDESCRIPTOR_P_H
#define FILES_FILEDESCRIPTOR_P_H

#include <unistd.h>

namespace vlm
{
// Owns a file descriptor; -1 for none.
class FileDescriptor
{
public:
    explicit FileDescriptor(int descriptor = -1) : m_descriptor(descriptor) {}
    ~FileDescriptor() { reset(-1); }
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;

    int get() const { return m_descriptor; }
    bool isOpen() const { return m_descriptor >= 0; }
    void reset(int descriptor)
    {
        const int old = release();
        if (old >= 0) {
            close(old);
        }
        m_descriptor = descriptor;
    }
    int release()
    {
        const int descriptor = m_descriptor;
        m_descriptor = -1;
        return descriptor;
    }

private:
    int m_descriptor;
};
} // namespace vlm

#endif
