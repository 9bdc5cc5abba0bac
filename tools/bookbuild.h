#pragma once

#include <string>
#include <vector>

#include "book/bookbuilder.h"

// The command "build": makes a book out of files of games and of opening lines. Faults of games go to the
// error stream, the summary to standard output. What can't be read or written throws a BookError.
void BuildBook(const std::vector<std::string>& gameFiles, const std::vector<std::string>& lineFiles,
               const std::string& bookPath, const BookOptions& options);
