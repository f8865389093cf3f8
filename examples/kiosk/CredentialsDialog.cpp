#include "examples/kiosk/CredentialsDialog.h"

#include "cookies/VLMC_AuthSetting.h"

#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>

CredentialsDialog::CredentialsDialog(const VLMS_AuthInfo &info, QWidget *parent)
    : QDialog(parent), m_user(new QLineEdit(this)), m_password(new QLineEdit(this))
{
    setWindowTitle(tr("Password"));
    m_password->setEchoMode(QLineEdit::Password);
    QLabel *const host = new QLabel(info.hostName, this);
    host->setTextFormat(Qt::PlainText);
    QDialogButtonBox *const buttons =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    QFormLayout *const form = new QFormLayout(this);
    form->addRow(tr("Host"), host);
    form->addRow(tr("User"), m_user);
    form->addRow(tr("Password"), m_password);
    form->addRow(buttons);
}

void CredentialsDialog::fill(VLMS_AuthInfo &info) const
{
    info.user = m_user->text().toUtf8();
    info.passwd = m_password->text().toUtf8();
}
