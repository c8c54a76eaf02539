#pragma once

#include <QPushButton>
#include <QScrollArea>

#include <memory>

class QAction;

namespace Ui {
class StartPage;
}

// A button that looks like a link, with its accessible description under its text. Unlike
// QCommandLinkButton it shows the focus, and it needs no icon, which would take several
// milliseconds to load.
class StartLink final : public QPushButton
{
    Q_OBJECT

public:
    using QPushButton::QPushButton;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QFont titleFont() const;
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
