#pragma once

#include <stdexcept>

// Why tables can't be made or read, as a sentence for the user without its full stop.
struct TableError : std::runtime_error {
    using std::runtime_error::runtime_error;
};
