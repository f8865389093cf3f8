#ifndef EXAMPLES_KIOSK_COMMANDS_H
#define EXAMPLES_KIOSK_COMMANDS_H

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QTimer>

class Window;

/**
 * Plays a file of commands to the window, one per line, as a user would; for tests and pictures.
 *
 *     open URL                 shows a page; the next command does not wait for it
 *     wait                     goes on when the page is there; a page that fails ends the program
 *     wait-failure             goes on when the page could not be loaded
 *     sleep MILLISECONDS
 *     start                    shows the start page
 *     bookmark, bookmarks      adds the page; shows the list
 *     delete-bookmark ID
 *     zoom CODE, font FAMILY
 *     credentials USER PASSWORD   what the user enters when next asked
 *     change-user
 *     screenshot FILE
 *     state                    prints what is shown as one line of JSON
 *     quit
 */
class Commands : public QObject
{
    Q_OBJECT

public:
    Commands(const QStringList &lines, Window &window);

    void start();

private:
    struct Command;
    static const Command kCommands[];

    void step();
    void goOn();
    void stop(const QString &complaint);
    void takeLoad(bool wentWell);
    void waitFor(bool success);

    void open(const QString &url);
    void wait(const QString &);
    void waitFailure(const QString &);
    void sleep(const QString &milliseconds);
    void openStart(const QString &);
    void bookmark(const QString &);
    void bookmarks(const QString &);
    void deleteBookmark(const QString &id);
    void zoom(const QString &code);
    void font(const QString &family);
    void enterCredentials(const QString &userAndPassword);
    void changeUser(const QString &);
    void screenshot(const QString &file);
    void state(const QString &);
    void quit(const QString &);

    QStringList m_lines;
    Window &m_window;
    QTimer m_next;
    QTimer m_patience;
    QStringList m_credentials; // user and password, until they are asked for
    bool m_loading;
    bool m_wentWell;
    bool m_waiting;
    bool m_success; // what is waited for
};

#endif
