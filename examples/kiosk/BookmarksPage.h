#ifndef EXAMPLES_KIOSK_BOOKMARKSPAGE_H
#define EXAMPLES_KIOSK_BOOKMARKSPAGE_H

#include <QtWidgets/QListWidget>

/// Shows the bookmarks as pictures with their titles; a click opens one.
class BookmarksPage : public QListWidget
{
    Q_OBJECT

public:
    explicit BookmarksPage(QWidget *parent);

    /// Reads the store again; ids are good until its next change.
    void refresh();

signals:
    void chosen(const QUrl &url);
    void removalWanted(int id);

protected:
    void keyPressEvent(QKeyEvent *event) override;
};

#endif
