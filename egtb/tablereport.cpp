#include "egtb/tablereport.h"

#include <cstdarg>
#include <cstdio>
#include <string>
#include <vector>

namespace {

void PrintLine(const char* line) {
    Print("%s\n", line);
    FlushOutput();
}

int Holds = 0;
std::vector<std::string> Waiting;

}  // namespace

void (*TableReporter)(const char* line) = PrintLine;

void ReportTable(const char* format, ...) {
    va_list arguments, again;
    va_start(arguments, format);
    va_copy(again, arguments);
    // Paths have no limit.
    std::string line(static_cast<size_t>(std::vsnprintf(nullptr, 0, format, arguments)), '\0');
    std::vsnprintf(line.data(), line.size() + 1, format, again);
    va_end(again);
    va_end(arguments);
    if (Holds > 0) {
        Waiting.push_back(line);
    } else {
        TableReporter(line.c_str());
    }
}

TableReportHold::TableReportHold() {
    ++Holds;
}

TableReportHold::~TableReportHold() {
    if (--Holds > 0) return;
    for (const std::string& line : Waiting) TableReporter(line.c_str());
    Waiting.clear();
}
