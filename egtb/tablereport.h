#pragma once

#include "platform/output.h"

// What there is to say about tables. How a line gets to the user is the front end's business, which depends
// on the dialect spoken.

// Prints a line, given without its end, at once. Set at start-up; until then lines are printed as they are.
extern void (*TableReporter)(const char* line);

// While one of these lives, lines wait: whoever has begun a line of another kind finishes it first.
class TableReportHold {
  public:
    TableReportHold();
    ~TableReportHold();
    TableReportHold(const TableReportHold&) = delete;
    TableReportHold& operator=(const TableReportHold&) = delete;
};

// Formats a line as printf does and has it printed.
void ReportTable(const char* format, ...) KESTROVAN_PRINTF_LIKE;
