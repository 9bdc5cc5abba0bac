#pragma once

#include <stdexcept>

// Why a book can't be made or read, as a sentence for the user without its full stop.
struct BookError : std::runtime_error {
    using std::runtime_error::runtime_error;
};
