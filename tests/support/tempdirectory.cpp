#include "tests/support/tempdirectory.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>

TempDirectory::TempDirectory() : path_(std::filesystem::temp_directory_path() / "kestrovan-test-XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary directory");
}

TempDirectory::~TempDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void TempDirectory::WriteFile(const std::string& name, const std::string& text) const {
    std::ofstream(FilePath(name), std::ios::binary) << text;
}

std::string TempDirectory::ReadFile(const std::string& name) const {
    std::ostringstream text;
    text << std::ifstream(FilePath(name), std::ios::binary).rdbuf();
    return text.str();
}
