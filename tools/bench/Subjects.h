#pragma once

#include "Bench.h"

// Each measures its subject and prints the results as lines of the table.
void measureReading(Bench &bench);
void measureMemory(Bench &bench);
void measureOpening(Bench &bench);
void measureRequerying(Bench &bench);
void measureSearching(Bench &bench);
void measureSorting(Bench &bench);
void measureImporting(Bench &bench);
void measureExporting(Bench &bench);
void measureBatchImport(Bench &bench);
void measureListing(Bench &bench);
void measureBrowsing(Bench &bench);
void measureComposing(Bench &bench);
void measurePrinting(Bench &bench);
void measureStartup(Bench &bench);
