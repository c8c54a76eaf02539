// Writes the web pages of a database with the generic templates in one of the styles, as File,
// Export does:
//   makepages DATABASE FOLDER plaincard|cookbook

#include "export/WebPages.h"
#include "interaction/Progress.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4) {
        std::fputs("usage: makepages DATABASE FOLDER plaincard|cookbook\n", stderr);
        return 2;
    }
    PageSettings settings;
    if (arguments[3] == u"cookbook")
        settings.style = PageStyle::Cookbook;
    SilentProgress progress;
    try {
        exportPages(arguments[1], arguments[2], settings, progress);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "makepages: %s\n", error.what());
        return 1;
    }
    return 0;
}
