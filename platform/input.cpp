#include "platform/input.h"

#include <algorithm>
#include <deque>

#include "platform/platform.h"

namespace {

struct LineBuffer {
    std::deque<std::string> Complete;  // cut from the input, not yet taken
    std::deque<std::string> Kept;      // taken during a search, to be interpreted after it
    std::string Partial;               // what follows the last line feed, at most LINE_LIMIT bytes
    bool IsClosed = false;             // a raw read has reported the end
};

// Built on first use, so that nothing runs before main.
LineBuffer& Lines() {
    static LineBuffer lines;
    return lines;
}

void EndPartialLine() {
    LineBuffer& lines = Lines();
    if (!lines.Partial.empty() && lines.Partial.back() == '\r') lines.Partial.pop_back();
    lines.Complete.push_back(lines.Partial);
    lines.Partial.clear();
}

// One raw read, which waits when nothing is there, cut into lines.
void FillLines() {
    LineBuffer& lines = Lines();
    char buffer[4096];
    const size_t count = ReadRawInput(buffer, sizeof buffer);
    if (count == 0) {
        lines.IsClosed = true;
        if (!lines.Partial.empty()) EndPartialLine();
    }
    for (size_t i = 0; i < count; ++i) {
        if (buffer[i] == '\n') {
            EndPartialLine();
        } else if (lines.Partial.size() < LINE_LIMIT) {
            lines.Partial += buffer[i];
        }
    }
}

bool TakeFirst(std::deque<std::string>& lines, std::string& line) {
    if (lines.empty()) return false;
    line = std::move(lines.front());
    lines.pop_front();
    return true;
}

void ReadWithoutWaiting() {
    while (Lines().Complete.empty() && !Lines().IsClosed && IsInputWaiting()) FillLines();
}

}  // namespace

bool ReadLine(std::string& line) {
    if (TakeFirst(Lines().Kept, line)) return true;
    while (Lines().Complete.empty() && !Lines().IsClosed) FillLines();
    return TakeFirst(Lines().Complete, line);
}

bool InputAvailable() {
    return !Lines().Complete.empty() || Lines().IsClosed || IsInputWaiting();
}

bool TakeWaitingLine(std::string& line) {
    ReadWithoutWaiting();
    return TakeFirst(Lines().Complete, line);
}

void KeepLine(const std::string& line) {
    Lines().Kept.push_back(line);
}

void UnreadLine(const std::string& line) {
    Lines().Kept.push_front(line);
}

bool HasKeptLine() {
    return !Lines().Kept.empty();
}

bool HasKeptLine(bool (*isOfKind)(const std::string& line)) {
    return std::any_of(Lines().Kept.begin(), Lines().Kept.end(), isOfKind);
}

bool HasInputEnded() {
    ReadWithoutWaiting();
    return Lines().IsClosed && Lines().Complete.empty();
}

void EndInput() {
    Lines().Complete.clear();
    Lines().Partial.clear();
    Lines().IsClosed = true;
}

void ResetInput() {
    Lines() = LineBuffer();
}
