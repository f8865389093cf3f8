#ifndef TESTS_SUPPORT_TEMPORARYFOLDER_H
#define TESTS_SUPPORT_TEMPORARYFOLDER_H

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// A folder of its own, removed with all it holds at the end. Qt 4 has no such class.
class TemporaryFolder
{
public:
    /// A folder below this one; ends the process when none can be created.
    explicit TemporaryFolder(const QString &parent);
    ~TemporaryFolder();

    /// Ends with "/".
    QString path() const;

private:
    Q_DISABLE_COPY(TemporaryFolder)

    QByteArray m_name;
};

/// Removes a folder with all it holds, without following links; false when something is left.
bool removeFolder(const QString &path);

#endif
