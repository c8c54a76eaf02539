#pragma once

#include <QString>

class Interaction;

// If the recipe database is a file of the Access format, asks whether to take over its recipes, and
// replaces it if the user says Yes. If an earlier takeover was interrupted, finishes or undoes it
// and tells the user. Shows all failures. To be called while the program does not have the database
// open. Only looks at the start of a file of this version.
void offerTakeover(Interaction &interaction, const QString &databasePath);
