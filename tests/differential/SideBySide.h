#ifndef SIDEBYSIDE_H
#define SIDEBYSIDE_H

#include "tests/differential/Hostile.h"
#include "tests/support/Files.h"
#include "tests/support/SavedDocuments.h"

class VLMC_XMLSetting;

/// What a sequence of operations depends on.
struct Sequence {
    unsigned seed;
    int operations;
    /// Files hold about 999 entries instead of a handful.
    bool isLong;
};

/// Lines that describe one side; sides that agree have the same.
class Answer
{
public:
    Answer &operator<<(const QByteArray &text);
    Answer &operator<<(const QString &text);
    Answer &operator<<(int number);
    Answer &operator<<(bool truth);
    Answer &operator<<(const QDateTime &time);

    QByteArray lines;
};

/**
 * A store and its plain counterpart doing the same, one operation after the other. After each one
 * the results, the log and the whole trees have to agree, and every id has to lead to the same
 * entry.
 *
 * A derived class holds the two and does the store's own operations.
 */
class SideBySide
{
public:
    SideBySide(VLMC_XMLSetting &store, PlainStore &plain, const Sequence &sequence);
    virtual ~SideBySide();

    /// Plays the whole sequence. What differed first, and the operations up to there; empty when
    /// nothing did.
    QByteArray play();

    /// Over all sequences of the program.
    static int operationsPlayed();
    static int sequencesPlayed();

protected:
    /// One operation of the store's own on both sides; did() and agree() tell of it.
    virtual void operate() = 0;
    /// The document of a file as a user may have left it.
    virtual QByteArray document() = 0;

    void did(const QByteArray &operation);
    void agree(const Answer &store, const Answer &plain);

    QString file(const char *name) const;
    /// A directory that holds files, one that has none, an empty text.
    QString anyDirectory();
    /// anyDirectory(), after a new file was put there or an old one taken away.
    QString directoryToLoad(const char *fileName);
    /// The file there has to be what the plain side wrote.
    void agreeOnFile(const QString &path);
    int anyMax();
    int anyId();

    /// Entries of this name between foreign ones, with fields of the given names, some missing,
    /// doubled, in another order, or out of place.
    QByteArray documentOf(const char *rootName, const char *entryName,
                          const QList<QByteArray> &fieldNames, int maxEntries = 10);
    /// What a field of this name may hold.
    virtual QString fieldText(const QByteArray &fieldName);

    /// One operation of the base on both sides.
    void operateBase();

    Random random;

private:
    void changeTree();
    void readTree();
    void loadOrSave();
    void deleteAll();
    QByteArray entryOf(const QByteArray &name, const QList<QByteArray> &fieldNames,
                       const QString &id);
    QByteArray fieldOf(const QByteArray &name);
    QString idInFile(int index, int entries);

    void compare();
    void compareTrees();
    void compareIds(VLMC_XMLSetting &store, PlainStore &plain);
    int idToLookUp(int entries);
    void differ(const QByteArray &what, const QByteArray &store, const QByteArray &plain);
    /// Where a node stands among the root's children.
    QByteArray placeOf(VLMC_XMLNode *node);
    QByteArray placeOf(const ElementPointer &element);
    static QByteArray placeIn(VLMC_XMLNode *root, VLMC_XMLNode *node);
    static QByteArray placeIn(const ElementPointer &root, const ElementPointer &element);

    VLMC_XMLSetting &m_store;
    PlainStore &m_plain;
    const Sequence m_sequence;
    Hostile m_hostile;
    // Sequences break limits and rename roots; every byte they save is compared with the models'.
    ForeignDocuments m_foreign;
    TestDirectory m_directory;
    QByteArray m_history;
    QByteArray m_difference;
};

/// The columns and rows of sequences: short ones and long ones.
void addSequences();

/// Plays the sequences of one row.
template <typename Pair>
void playSequences()
{
    QFETCH(int, firstSeed);
    QFETCH(int, sequences);
    QFETCH(int, operations);
    QFETCH(bool, isLong);
    const QByteArray percent = qgetenv("VELMORA_SEQUENCES_PERCENT");
    const int share = percent.isEmpty() ? 100 : percent.toInt();
    for (int i = 0; i < qMax(sequences * share / 100, 1); ++i) {
        QByteArray difference;
        {
            const Sequence sequence = {unsigned(firstSeed + i), operations, isLong};
            Pair pair(sequence);
            difference = pair.play();
        }
        runDeferredDeletes();
        if (!difference.isEmpty()) {
            QTest::qFail(difference.constData(), __FILE__, __LINE__);
            return;
        }
    }
}

/// Says how much was played.
void reportSequences();

#endif
