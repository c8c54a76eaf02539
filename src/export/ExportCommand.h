#pragma once

class Interaction;

// Asks for a folder, writes the web pages of all recipes there as the settings say, and offers to
// open them. If the pages' folder there holds anything else, says so and asks for another one.
// Throws DatabaseError.
void exportWebPages(Interaction &interaction);
