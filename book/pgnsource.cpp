#include "book/pgnsource.h"

#include <algorithm>
#include <cassert>

namespace {

constexpr size_t BUFFER_BYTES = size_t{1} << 16;
constexpr char BYTE_ORDER_MARK[] = "\xEF\xBB\xBF";

}  // namespace

PgnSource::PgnSource(std::FILE* stream) : stream_(stream), bytes_(BUFFER_BYTES) {
    if (StartsWith(BYTE_ORDER_MARK)) place_ += sizeof BYTE_ORDER_MARK - 1;
}

void PgnSource::SkipLine() {
    for (int byte = Peek(); byte != END && byte != '\n' && byte != '\r'; byte = Peek()) Take();
}

bool PgnSource::StartsWith(const char* text) {
    for (size_t i = 0; text[i] != '\0'; ++i) {
        if (Peek(i) != static_cast<unsigned char>(text[i])) return false;
    }
    return true;
}

int PgnSource::PeekBeyond(size_t ahead) {
    assert(ahead < LONGEST_PEEK);
    if (place_ + ahead >= bytes_.size()) {
        std::copy(bytes_.begin() + static_cast<ptrdiff_t>(place_),
                  bytes_.begin() + static_cast<ptrdiff_t>(end_), bytes_.begin());
        end_ -= place_;
        place_ = 0;
    }
    while (place_ + ahead >= end_) {
        const size_t count = std::fread(bytes_.data() + end_, 1, bytes_.size() - end_, stream_);
        if (count == 0) return END;
        end_ += count;
    }
    return bytes_[place_ + ahead];
}

int PgnSource::TakeLineEnd() {
    if (Peek() == '\n') ++place_;
    return '\n';
}
