#pragma once

#include <QCommandLinkButton>
#include <QScrollArea>

#include <memory>

class QAction;

namespace Ui {
class StartPage;
}

// A link that shows when it has the focus; QCommandLinkButton does not.
class StartLink final : public QCommandLinkButton
{
    Q_OBJECT

public:
    using QCommandLinkButton::QCommandLinkButton;

protected:
    void paintEvent(QPaintEvent *event) override;
};

// What the main window shows while no child window is open: the program's picture and name, and
// links to what a cook does first. Each link triggers an item of the menus.
class StartPage final : public QScrollArea
{
    Q_OBJECT

public:
    // The actions must outlive it.
    StartPage(QAction &recipes, QAction &import, QAction &ingredients, QAction &exportPages);
    ~StartPage() override;

private:
    std::unique_ptr<Ui::StartPage> m_ui;
};
