#include "about/frmAbout.h"

#include "frame/ErrorBoundary.h"
#include "platform/ApplicationInformation.h"
#include "ui_frmAbout.h"

frmAbout::frmAbout(const ErrorBoundary &boundary, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::frmAbout>())
{
    m_ui->setupUi(this);
    QFont large = m_ui->lblTitle->font();
    large.setPointSizeF(large.pointSizeF() * 1.8);
    large.setBold(true);
    m_ui->lblTitle->setFont(large);
    boundary.connect(m_ui->cmdOK, &QPushButton::clicked, this, &frmAbout::cmdOK_Click);
}

frmAbout::~frmAbout() = default;

void frmAbout::Form_Load()
{
    const QString title = platform::productName();
    const platform::VersionNumber version = platform::programVersion();
    setWindowTitle(tr("About %1").arg(title));
    m_ui->lblVersion->setText(tr("Version %1.%2.%3")
                                  .arg(QString::number(version.major),
                                       QString::number(version.minor),
                                       QString::number(version.revision)));
    m_ui->lblTitle->setText(title);
    m_ui->lblDisclaimer->setText(
        tr("This program is protected by copyright law.\n"
           "Copying or distributing it without permission may be punished by law."));
}

void frmAbout::cmdOK_Click()
{
    accept();
}
