#pragma once

#include <QStringList>

// Runs pantrywise-takeover with its command line, which begins with the name of the program: makes
// a recipe database from a file of the Access format without asking anything. Returns the exit
// status: 0 if the database has been made, otherwise 1. Needs a QCoreApplication.
int runTakeoverCommand(const QStringList &arguments);
