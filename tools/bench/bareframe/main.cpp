// A minimal Qt program with an MDI area and a menu bar, with which the program's start is compared.

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
