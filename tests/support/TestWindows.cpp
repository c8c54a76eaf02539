#include "support/TestWindows.h"

#include <QMenuBar>
#include <QStatusBar>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

TestWindow::TestWindow(Frame &frame)
    : ChildWindow(frame)
{
    auto *layout = new QVBoxLayout(this);
    for (QWidget *widget : std::initializer_list<QWidget *>{&button, &list, &next, &done})
        layout->addWidget(widget);
    button.setObjectName(u"button"_s);
    list.setObjectName(u"list"_s);
    next.setObjectName(u"next"_s);
    done.setObjectName(u"done"_s);
    for (int i = 0; i < 50; ++i)
        list.addItem(QString::number(i));
    connect(&button, &QPushButton::clicked, this, &TestWindow::press);
    connect(&next, &QPushButton::clicked, this, &TestWindow::step);
    connect(&done, &QPushButton::clicked, this, &TestWindow::leave);
    setDefaultButton(&button);
    setCancelButton(&done);
    setCloseButton(&done);
    setAutoRepeatButtons({&next});
    setWindowTitle(u"TestWindow's 100%1"_s);
}

MainWindow::MainWindow()
{
    setCentralWidget(&area);
    QMenu *menu = menuBar()->addMenu(u"&View"_s);
    int key = Qt::Key_F5;
    for (const auto handler :
         {&MainWindow::open<List>, &MainWindow::open<Plants>, &MainWindow::open<Tools>,
          &MainWindow::open<Record>, &MainWindow::open<Editor>}) {
        QAction *action = menu->addAction(QString());
        action->setShortcut(key++);
        frame.boundary().connect(action, &QAction::triggered, this, handler);
    }
    statusBar()->addWidget(&leftLabel);
    statusBar()->addPermanentWidget(&rightLabel);
    resize(1000, 800);
    show();
    activateWindow();
    if (!QTest::qWaitForWindowActive(this))
        qFatal("the window does not become active");
    eventLog.clear();
}

void MainWindow::show(ChildWindow &window)
{
    static const QStringList order{u"List"_s, u"Record"_s, u"Editor"_s, u"Plants"_s, u"Tools"_s};
    const auto place = static_cast<int>(order.indexOf(TestWindow::nameOf(&window)));
    if (!window.isVisible())
        window.parentWidget()->setGeometry(330 * (place % 3), 350 * (place / 3), 300, 300);
    frame.show(window);
}
