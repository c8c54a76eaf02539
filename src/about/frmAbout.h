#pragma once

#include <QDialog>

#include <memory>

class ErrorBoundary;

namespace Ui {
class frmAbout;
}

// Shows what the program is and its version.
class frmAbout final : public QDialog
{
    Q_OBJECT

public:
    explicit frmAbout(const ErrorBoundary &boundary, QWidget *parent = nullptr);
    ~frmAbout() override;

    void Form_Load();

private:
    void cmdOK_Click();

    std::unique_ptr<Ui::frmAbout> m_ui;
};
