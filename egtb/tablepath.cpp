#include "egtb/tablepath.h"

#include <algorithm>

#include "core/textfold.h"
#include "platform/platform.h"

std::vector<std::string> SplitTablePath(const std::string& path) {
    constexpr char SEPARATORS[] = ",;", BLANKS[] = " \t";
    std::vector<std::string> directories;
    for (size_t start = 0; start <= path.size();) {
        const size_t end = std::min(path.find_first_of(SEPARATORS, start), path.size());
        const std::string piece = path.substr(start, end - start);
        const size_t first = piece.find_first_not_of(BLANKS), last = piece.find_last_not_of(BLANKS);
        if (first != std::string::npos) directories.push_back(piece.substr(first, last - first + 1));
        start = end + 1;
    }
    return directories;
}

std::string TableName(const TableClass& tableClass, int sideToMove, int part) {
    std::string name = tableClass.Name;
    if (part != WHOLE_FILE) {
        name += '.';
        name += static_cast<char>(part < 10 ? '0' + part : 'a' + part - 10);
    }
    return name + (sideToMove == WHITE ? ".nbw" : ".nbb");
}

TableDirectory::TableDirectory(const std::string& path) : path_(path) {
    std::vector<std::string> names = FindFiles(path, "");
    // Of several that differ in the case of letters only, always the same one counts.
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) {
        std::string folded = name;
        std::transform(folded.begin(), folded.end(), folded.begin(), FoldCase);
        names_.emplace(folded, name);
    }
}

bool TableDirectory::MayHave(const TableClass& tableClass) const {
    const std::string start = std::string(tableClass.Name) + '.';
    const auto next = names_.lower_bound(start);
    return next != names_.end() && next->first.starts_with(start);
}

std::string TableDirectory::Find(const std::string& name) const {
    const auto found = names_.find(name);
    return found == names_.end() ? "" : JoinPath(path_, found->second);
}
