#ifndef EXAMPLES_KIOSK_CREDENTIALSDIALOG_H
#define EXAMPLES_KIOSK_CREDENTIALSDIALOG_H

#include <QtWidgets/QDialog>

struct VLMS_AuthInfo;
class QLineEdit;

/// Asks for the user name and the password for a host.
class CredentialsDialog : public QDialog
{
    Q_OBJECT

public:
    CredentialsDialog(const VLMS_AuthInfo &info, QWidget *parent);

    /// Fills in what was entered.
    void fill(VLMS_AuthInfo &info) const;

private:
    QLineEdit *m_user;
    QLineEdit *m_password;
};

#endif
