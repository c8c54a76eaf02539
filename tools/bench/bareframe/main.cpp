// The least that a Qt program with a multiple-document frame and a menu bar is: what the program's
// start is measured against.

#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QMenuBar>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QMainWindow window;
    window.resize(1000, 720);
    window.setCentralWidget(new QMdiArea(&window));
    for (const char *title : {"&File", "&View", "&Search", "&Help"})
        window.menuBar()->addMenu(QLatin1StringView(title));
    window.show();
    return QApplication::exec();
}
